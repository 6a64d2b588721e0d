// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmBuilding.h"
#include "core/AlarmForm.h"
#include "editor/AlarmEditorServices.h"
#include "editor/AlarmFormControls.h"
#include "editor/FormEnabling.h"
#include "platform/NotificationCenter.h"

#include <QDialog>

#include <memory>

class QPushButton;

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

class AlarmEditorDelegate;
class SoundChoice;
class TimeChoice;
class VoiceChoice;

// The window in which an alarm is made or changed, and in which stored alarms are reused and
// deleted. Setting an alarm stores a copy of it under its title, hands it to the delegate and
// closes the window, which can be opened again. Main thread only.
class AlarmSetController final : public QDialog {
    Q_OBJECT

public:
    explicit AlarmSetController(AlarmEditorServices services);
    ~AlarmSetController() override;

    // Not owned; must outlive the editor, and must not destroy it while it is told of an alarm.
    void setDelegate(AlarmEditorDelegate* delegate) { m_delegate = delegate; }

    // Opens the window for the alarm, or for a new one when there is none, in front of all others.
    void showWithAlarm(const AlarmPtr& alarm);

    // The same for a new alarm that is like a stored one of which the date has passed.
    void showToStart(const AlarmPtr& stored);

    // The alarm that the window was opened for; null for a new one.
    [[nodiscard]] const AlarmPtr& editingOne() const { return m_editingOne; }
    // The stored one that it was opened to start; null for any other.
    [[nodiscard]] const AlarmPtr& starting() const { return m_starting; }

private:
    void setUpControls();
    void wireWhen();
    void wireAction();
    void wireLibrary();
    // Return sets, whatever desktop's buttons it would press; Space ticks.
    bool eventFilter(QObject* watched, QEvent* event) override;

    // What a control that was touched changes: its share of what is enabled, and the sentence.
    void ticksChanged(void (FormEnabling::*effect)(const AlarmForm&));
    void changed(void (FormEnabling::*effect)(const AlarmForm&));
    void manageDescriptionLabel();

    void fitToScreen();
    void setAlarm(const Alarm* alarm);

    void reloadTitles();
    void storedAlarmsDidChange();
    void comboBoxSelectionDidChange(int index);
    void selectTitle(const QString& title);
    void removeAlarmButtonPushed();

    void setButtonPushed();
    void showFaults(const QString& message);
    [[nodiscard]] std::optional<EditedAlarm> edited() const;
    [[nodiscard]] bool mustBeAhead(const QDateTime& now) const;
    AlarmPtr saveCurrentAlarm();
    void lookForEditingOne();

    const AlarmEditorServices m_services;
    std::unique_ptr<Ui::AlarmSetController> m_controls;
    AlarmFormControls m_formControls;
    SoundChoice* m_sound;
    VoiceChoice* m_voice;
    TimeChoice* m_times;
    QPushButton* m_setButton;
    AlarmForm m_form;
    FormEnabling m_enabling;

    NotificationCenter::Observation m_storedAlarmsObservation;
    NotificationCenter::Observation m_alarmsObservation;
    AlarmPtr m_editingOne;
    AlarmPtr m_starting;
    AlarmForm m_opened; // the form of the alarm that is edited
    bool m_isGone = false;
    AlarmEditorDelegate* m_delegate = nullptr;
};

} // namespace dorvane

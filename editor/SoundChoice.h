// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/AlarmEditorServices.h"
#include "editor/SoundPreview.h"
#include "platform/NotificationCenter.h"
#include "sounds/AlarmSoundMenuContructor.h"
#include "sounds/AudioStorageController.h"
#include "sounds/SoundMenuTarget.h"

#include <QObject>
#include <QString>

class QDialog;

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

// The sound rows of the alarm editor: which sound is chosen, hearing it, adding files to those that
// can be chosen, and recording some. Belongs to the editor's window; when that closes, what is
// being heard ends, and so does recording.
class SoundChoice final : public QObject, private SoundMenuTarget {
    Q_OBJECT

public:
    // The controls must be those of the window.
    SoundChoice(const AlarmEditorServices& services, Ui::AlarmSetController& controls,
                QDialog* window);
    ~SoundChoice() override;

    // Full path; empty for none.
    [[nodiscard]] const QString& soundPath() const { return m_soundPath; }
    // Shows the sound's name, greyed as soon as it is known that the file is gone. Does not emit
    // soundPathChanged().
    void setSoundPath(const QString& path);

    // To be called before a menu of the window opens: lists the sounds that are there.
    void rebuildMenu();

    // Ends what is being heard.
    void stopPreview() { m_preview.stop(); }

Q_SIGNALS:
    // By the user.
    void soundPathChanged();
    // Something is heard from now on.
    void previewBegan();

private:
    void addWell();
    void connectControls();
    void soundSelected(const QString& path) override;
    void manageReminders() override;
    void playButtonPushed();
    void setSoundVolume();
    void previewChanged(SoundPreview::State state);
    void showFault(const QString& name, const QString& fault);
    void chooseAudioFile();
    void soundWellClicked();
    void reminderAccepted(const QString& path);
    void windowClosed();

    const AlarmEditorServices& m_services;
    Ui::AlarmSetController& m_controls;
    QDialog* m_window;
    const QString m_wellHint;
    QString m_soundPath;
    AlarmSoundMenuContructor m_asmc;
    SoundPreview m_preview;
    NotificationCenter::Observation m_wellClicks;
    std::weak_ptr<ReminderController> m_reminders; // which lives while its window is shown
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Coalescer.h"
#include "overview/AlarmsModel.h"
#include "platform/NotificationCenter.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class AlarmsWindow;
}

namespace dorvane {

// All alarms, running and stored: looked through, switched on and off, edited, skipped, duplicated,
// deleted and brought back. What it shows follows the clock and the library while it is open. Main
// thread only.
class AlarmsWindow final : public QDialog {
    Q_OBJECT

public:
    // What it works with; must outlive it.
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        std::function<std::vector<AlarmPtr>()> running;
        std::function<std::vector<AlarmPtr>()> stored;
        // What is next, in words; changes with summaryDidChangeNotification. May be empty.
        std::function<QString()> summary;
        std::function<void()> create;
        std::function<void(const AlarmPtr& alarm)> edit;
        std::function<void(const AlarmPtr& stored)> switchOn;
        std::function<void(const AlarmPtr& running)> switchOff;
        std::function<void(const AlarmPtr& running)> skip;
        // Answers the title of the new alarm, which is stored; empty when there is no room.
        std::function<QString(const AlarmPtr& alarm)> duplicate;
        // The running alarm and its entry of the library, either of which may be null.
        std::function<void(const AlarmPtr& running, const AlarmPtr& stored)> remove;
        std::function<void()> undo;
        std::function<std::optional<QString>()> undoable; // the title of what was deleted last
    };

    explicit AlarmsWindow(Surroundings surroundings);
    ~AlarmsWindow() override;

    // Opens the window, or brings it to the front.
    void present();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void connectControls();
    void update();
    void updateButtons();
    void updateSummary();
    void select(int row);
    [[nodiscard]] const AlarmRow* current() const;
    void switchOn(const AlarmRow& row, bool on);
    // Does it to the chosen alarm, in a turn of the loop of its own: the list may be read anew.
    void onCurrent(const std::function<void(const AlarmRow& row)>& action);
    void duplicate(const AlarmRow& row);

    Surroundings m_surroundings;
    std::unique_ptr<Ui::AlarmsWindow> m_form;
    AlarmsModel m_model;
    QString m_wanted; // the key of what is to be chosen when it comes
    Coalescer m_update;
    std::vector<NotificationCenter::Observation> m_observations;
};

} // namespace dorvane

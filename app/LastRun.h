// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/Journal.h"
#include "journal/MissedAlarmsWindow.h"
#include "platform/RunLoop.h"

#include <memory>
#include <optional>

namespace dorvane {

class ActiveAlarms;
class Workspace;

// What the last run left behind: joins the restored alarms, the journal and the report of a crash,
// and tells the user of what he missed. Main thread only.
class LastRun {
public:
    struct Surroundings {
        RunLoop& runLoop;
        ActiveAlarms& activeAlarms;
        Journal& journal;
        Workspace& workspace;
        // The report of a crash that nobody was told of yet.
        std::function<std::optional<QString>()> takeCrashReport;
        std::function<void(const AlarmPtr& alarm)> schedule;
        // Before the first window.
        std::function<void()> prepareWindow;
    };

    // All of the surroundings must outlive it.
    explicit LastRun(Surroundings surroundings);

    // After the alarms were put back. Looks a moment later, so that a start does not wait for it.
    void begin();

    // At an orderly quit; and when that was called off.
    void end();
    void goOn();

private:
    [[nodiscard]] Journal::Restored restored() const;
    void look();
    void tell();
    void answered(const std::vector<MissedAlarm>& again);

    Surroundings m_surroundings;
    QString m_crash;
    RunLoopTimer m_look;
    std::unique_ptr<MissedAlarmsWindow> m_window;
};

} // namespace dorvane

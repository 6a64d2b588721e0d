// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmPause.h"
#include "journal/Journal.h"
#include "journal/MissedAlarmsWindow.h"
#include "platform/RunLoop.h"

#include <memory>
#include <optional>

namespace dorvane {

class AlarmDelegate;
class Workspace;

// What the last run left behind: joins the restored alarms, the journal and the report of a crash,
// and tells the user of what he missed. Main thread only.
class LastRun {
public:
    struct Surroundings {
        RunLoop& runLoop;
        ActiveAlarms& activeAlarms;
        AlarmPause& pause;
        Journal& journal;
        Workspace& workspace;
        // Reads preferences that were out of reach, and then calls back.
        std::function<void(std::function<void()> looked)> lookAtPreferences;
        // What was announced since.
        std::function<std::vector<ToldAlarm>()> announced;
        // The report of a crash that nobody was told of yet.
        std::function<std::optional<QString>()> takeCrashReport;
        std::function<void(const AlarmPtr& alarm)> schedule;
        // Before the first window.
        std::function<void()> prepareWindow;
    };

    // All of the surroundings must outlive it.
    explicit LastRun(Surroundings surroundings);

    // Puts the alarms back, as that run stored or left them, and makes `delegate` theirs. What it
    // missed is told of a moment later, so that a start does not wait for it. What of it is not in
    // reach yet, as in a home that is mounted late, is looked for again, ever more seldom, for a
    // quarter of an hour.
    void restore(AlarmDelegate& delegate);

    // At an orderly quit, when the alarms are stored, or cannot be. It may be called off: what
    // happens after it is written down as before.
    void end(bool isStored, Journal::Ends ends);

private:
    void open(const ActiveAlarms::Decisions& decisions);
    void lookAgainLater();
    void lookAtPreferences();
    void restoreLate();
    void goOnPausing();
    void look();
    void tell();
    void answered(const std::vector<MissedAlarm>& again);

    Surroundings m_surroundings;
    QString m_crash;
    bool m_hasLooked = false;
    RunLoopTimer m_look;
    RunLoopTimer m_lookAgain;
    int m_looks = 0;
    bool m_hasJournalCome = false;
    std::optional<ActiveAlarms::Left> m_late; // of the journal that came
    std::unique_ptr<MissedAlarmsWindow> m_window;
};

} // namespace dorvane

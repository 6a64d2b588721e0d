// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RunningAlarm.h"
#include "platform/RunLoop.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace dorvane {

class AlarmDelegate;
class Clock;

// The alarms of the previous run as they are put back at the start. A login may come before the
// network has set the clock: in the first ten minutes each setting of it has the same decisions
// made again, on the alarms as they were, and lets timers last as long as they say. Main thread
// only.
class RestoredAlarms {
public:
    // Both must outlive the object.
    RestoredAlarms(RunLoop& runLoop, Clock& clock);

    // The end of a pause that goes on, or has ended meanwhile: what it held has not passed. To be
    // called before alarms are put back, where there was one; see putBackPaused().
    void setPausedUntil(const std::optional<Instant>& until) { m_pausedUntil = until; }

    // What became of alarms whose time has passed.
    struct Decisions {
        std::vector<AlarmPtr> back = {};        // at a correction: they are ahead after all
        std::vector<RunningAlarm> dropped = {}; // as they were: with the due time that has passed
        std::vector<RunningAlarm> movedOn = {}; // that run again, with the due time that has passed
    };

    // One of the two is called, and again for what comes into reach later, which then is treated as
    // the first was. The delegate, which must outlive the object, becomes that of the alarms that
    // run again.

    // After an orderly end: timers count anew. Past alarms are dropped, but for weekday alarms,
    // which move on to their next day.
    Decisions restore(const std::vector<AlarmPtr>& stored, AlarmDelegate& delegate);
    // After any other end the alarms go on as if there had been none: timers run on, snoozes hold.
    // What has passed and repeats moves on, what does not is dropped. What has no due time that
    // could be read stands in the list as before.
    Decisions resume(const std::vector<RunningAlarm>& running, const std::vector<AlarmPtr>& undated,
                     AlarmDelegate& delegate);

    // Puts back what was dropped and a pause held, where that is known only since.
    void putBackPaused();

    // Undoes restore(), where it turns out that the list was not the newest: ends what is as it was
    // put back.
    void takeBack();

    // Of all calls since.
    [[nodiscard]] const std::vector<RunningAlarm>& dropped() const { return m_dropped; }

    // Called when decisions have turned out otherwise: with what is new in them.
    using Corrected = std::function<void(const Decisions& decisions)>;
    void setCorrected(Corrected corrected) { m_corrected = std::move(corrected); }

    // How long the clock of a machine that has just started is not trusted.
    static constexpr std::chrono::minutes doubt{10};

private:
    // What a decision changes in an alarm.
    struct Dates {
        QDateTime time;
        QTime wishedTime;
        QDateTime runTime;
        quint64 snoozed = 0; // minutes
        WeekdaySet weekdays;

        [[nodiscard]] static Dates of(const Alarm& alarm);
        void giveTo(Alarm& alarm) const;
        friend bool operator==(const Dates&, const Dates&) = default;
    };
    struct Restored {
        RunningAlarm was;
        Dates before; // as it was left
        Dates after;  // as put back
    };

    void begin(AlarmDelegate& delegate, bool resumes);
    [[nodiscard]] bool putBack(RunningAlarm& left, Decisions& decisions);
    [[nodiscard]] bool decide(const RunningAlarm& left, Decisions& decisions);
    void clockWasSet();
    void shiftTimers(std::chrono::milliseconds by);
    void dropAgain(Decisions& decisions);
    void putBackAgain(Decisions& decisions);
    [[nodiscard]] bool isUntouched(const Restored& restored) const;
    [[nodiscard]] bool isAsPutBack(const Restored& restored) const;
    [[nodiscard]] bool runsOn(const AlarmPtr& alarm) const;

    RunLoop& m_runLoop;
    Clock& m_clock;
    AlarmDelegate* m_delegate = nullptr;
    bool m_resumes = false;
    std::optional<Instant> m_pausedUntil;
    std::vector<Restored> m_restored;
    std::vector<RunningAlarm> m_dropped;
    Corrected m_corrected;
    RunLoop::Milliseconds m_start{0}; // since the machine's boot, here and below
    RunLoop::Milliseconds m_looked{0};
    Instant m_wallThen; // at m_looked
    RunLoopTimer m_clockSet;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "platform/RunLoop.h"

#include <chrono>
#include <functional>
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

    // Called once. Past alarms are dropped, but for weekday alarms, which move on to their next
    // day; the delegate, which must outlive the object, becomes that of the others.
    void restore(const std::vector<AlarmPtr>& stored, AlarmDelegate& delegate);

    // Those that are not running because their time had passed at the start.
    [[nodiscard]] const std::vector<AlarmPtr>& dropped() const { return m_dropped; }

    // Called when decisions have turned out otherwise: with what was put back, and what was
    // dropped.
    using Corrected = std::function<void(const std::vector<AlarmPtr>& putBack,
                                         const std::vector<AlarmPtr>& dropped)>;
    void setCorrected(Corrected corrected) { m_corrected = std::move(corrected); }

    // How long the clock of a machine that has just started is not trusted.
    static constexpr std::chrono::minutes doubt{10};

private:
    // What a decision changes in an alarm.
    struct Dates {
        QDateTime time;
        QDateTime runTime;
        WeekdaySet weekdays;

        [[nodiscard]] static Dates of(const Alarm& alarm);
        friend bool operator==(const Dates&, const Dates&) = default;
    };
    struct Restored {
        AlarmPtr alarm;
        Dates before; // as stored
        Dates after;  // as put back
    };

    [[nodiscard]] bool putBack(const AlarmPtr& alarm);
    void clockWasSet();
    void shiftTimers(std::chrono::milliseconds by);
    [[nodiscard]] std::vector<AlarmPtr> dropAgain();
    [[nodiscard]] std::vector<AlarmPtr> putBackAgain();
    [[nodiscard]] bool isAsPutBack(const Restored& restored) const;

    RunLoop& m_runLoop;
    Clock& m_clock;
    AlarmDelegate* m_delegate = nullptr;
    std::vector<Restored> m_restored;
    std::vector<AlarmPtr> m_dropped;
    Corrected m_corrected;
    RunLoop::Milliseconds m_start{0}; // since the machine's boot, here and below
    RunLoop::Milliseconds m_looked{0};
    Instant m_wallThen; // at m_looked
    RunLoopTimer m_clockSet;
};

} // namespace dorvane

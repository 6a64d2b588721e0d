// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "core/Coalescer.h"
#include "platform/NotificationCenter.h"

#include <vector>

namespace dorvane {

class Clock;
class UserNotificationCenter;

// Sees to it, while the program runs, that the desktop announces what falls due once it does not:
// keeps the announcer scheduled for a little after the nearest due time. While alarms ring in time
// it is moved on each time before it starts. Nothing is left to be done when the program ends. Main
// thread only.
class UsersNotificationManager {
public:
    // All of it must outlive this. What an earlier run has scheduled is replaced.
    UsersNotificationManager(RunLoop& runLoop, NotificationCenter& notifications,
                             const Clock& clock, UserNotificationCenter& center);

    // Has exactly these alarms announced should the program not ring them. For each change of the
    // clock's alarms it is called by itself, soon after.
    void synchronizeWithAlarms(const std::vector<AlarmPtr>& alarms);

    // Does at once what a change of the clock's alarms still asks for.
    void finish() { m_changed.finish(); }

    // How long after a due time the announcer starts.
    static constexpr std::chrono::seconds delay{5};
    // How long a due time counts as not rung, so that an end right after it is noticed: until the
    // journal must have it.
    static constexpr std::chrono::seconds doubt{3};

private:
    RunLoop& m_runLoop;
    UserNotificationCenter& m_center;
    std::optional<QDateTime> m_nearest; // the due time that is scheduled for
    bool m_isScheduled = false;         // by this run
    Coalescer m_changed;
    RunLoopTimer m_passed;
    NotificationCenter::Observation m_changes;
};

} // namespace dorvane

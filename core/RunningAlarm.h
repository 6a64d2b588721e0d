// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

// A running alarm as another run of the program wrote it down.
struct RunningAlarm {
    AlarmPtr alarm;
    Instant due; // snoozes included, of which an archived alarm knows nothing
};

// Snoozes the alarm as it was when it was due then: earlier than by itself, where the clock had
// been set back.
inline void snoozeUntil(Alarm& alarm, Instant due) {
    if (const auto now = alarm.due(due); now && !alarm.countsFromNow())
        alarm.setSnoozedMinutes(
            quint64(std::chrono::floor<std::chrono::minutes>(due - *now).count()));
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

// A running alarm as another run of the program wrote it down.
struct RunningAlarm {
    AlarmPtr alarm;
    Instant due; // snoozes included, of which an archived alarm knows nothing
};

// Snoozes the alarm as it was when it was due then.
inline void snoozeUntil(Alarm& alarm, Instant due) {
    if (const auto now = alarm.due(due); now && *now < due)
        alarm.setSnoozedMinutes(
            quint64(std::chrono::floor<std::chrono::minutes>(due - *now).count()));
}

} // namespace dorvane

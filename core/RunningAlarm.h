// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

// A running alarm as another run of the program wrote it down.
struct RunningAlarm {
    AlarmPtr alarm;
    Instant due; // snoozes included, of which an archived alarm knows nothing
};

} // namespace dorvane

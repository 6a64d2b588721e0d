// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <vector>

namespace dorvane {

class UserNotificationCenter;

// Has the desktop announce alarms while the program does not run.
class UsersNotificationManager {
public:
    // Announces each of these alarms once, at its next due time, and nothing else any more. With no
    // alarms everything is withdrawn.
    static void synchronizeWithAlarms(UserNotificationCenter& center,
                                      const std::vector<AlarmPtr>& alarms, Instant now);
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/AnnouncementPlan.h"
#include "platform/UserFolders.h"

namespace dorvane {

// What the announcer is started for.
enum class AnnounceAt { DueTime, Login };

// The announcer, a process of its own that is no further instance of the program: announces what is
// due and has not rung, unless an instance is there to ring it, and has itself started again for
// what is next. Returns the exit status, which tells whether everything was shown that was to be.
[[nodiscard]] int announce(int argc, char** argv, AnnounceAt moment);

// What announcers remember to have announced. Waits for the disk.
[[nodiscard]] std::vector<ToldAlarm> announcedAlarms(const UserFolders& folders);

} // namespace dorvane

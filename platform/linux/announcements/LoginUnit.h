// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/announcements/AnnouncementUnits.h"
#include "platform/UserFolders.h"

#include <QDBusConnection>

namespace dorvane {

// Sees to it that the announcer is started at each login, by a file among the user's units that
// stays as it is from then on; one that the user has masked or disabled stays so. What earlier
// versions have left there is removed and stopped, and nothing else. What fails is logged. Waits
// for the disk; any thread.
void settleLoginUnit(const UserFolders& folders, const AnnouncerCommand& command,
                     const QDBusConnection& bus);

} // namespace dorvane

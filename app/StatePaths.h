// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserFolders.h"

namespace dorvane {

// Where the program keeps what it knows of itself: the journal, reports of crashes.
[[nodiscard]] inline QString stateFolder(const UserFolders& folders) {
    return folders.state + QStringLiteral("/Dorvane");
}

[[nodiscard]] inline QString journalPath(const UserFolders& folders) {
    return stateFolder(folders) + QStringLiteral("/journal.plist");
}

// What was announced while the program did not run.
[[nodiscard]] inline QString announcedPath(const UserFolders& folders) {
    return stateFolder(folders) + QStringLiteral("/announced");
}

} // namespace dorvane

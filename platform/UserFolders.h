// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// The user's own folders, as full paths without a slash at the end. A plain value, so that tests
// can put them elsewhere. The folders need not exist.
struct UserFolders {
    QString home;
    QString caches;        // $XDG_CACHE_HOME
    QString configuration; // $XDG_CONFIG_HOME
    QString data;          // $XDG_DATA_HOME
    QString state = {};    // $XDG_STATE_HOME
};

} // namespace dorvane

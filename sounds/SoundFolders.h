// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserFolders.h"

#include <QString>

namespace dorvane {

// Where the sound library lies: folders below the user's caches, as full paths. A plain value.
struct SoundFolders {
    static constexpr QLatin1String recordingsBelowCaches{"/Dorvane/Recordings"};

    explicit SoundFolders(const UserFolders& user)
        : root(user.caches + QStringLiteral("/Dorvane/"))
        , sounds(root + QStringLiteral("Sounds"))
        , rings(root + QStringLiteral("Rings"))
        , iMovie(root + QStringLiteral("iMovie"))
        , recordings(user.caches + recordingsBelowCaches) {}

    QString root; // the only one that ends in a slash: it is shown to the user
    QString sounds;
    QString rings;
    QString iMovie;
    QString recordings;
};

} // namespace dorvane

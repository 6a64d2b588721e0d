// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserFolders.h"

#include <QString>

namespace dorvane {

// Where sounds lie, as full paths: what the user recorded or added among his data, because caches
// are emptied; copies that can be made again among his caches. A plain value.
struct SoundFolders {
    static constexpr QLatin1String recordingsBelow{"/Dorvane/Recordings"};

    explicit SoundFolders(const UserFolders& user)
        : root(user.data + QStringLiteral("/Dorvane/"))
        , sounds(root + QStringLiteral("Sounds"))
        , recordings(user.data + recordingsBelow)
        , breaks(user.data + QStringLiteral("/Pendix/Rings"))
        , rings(user.caches + QStringLiteral("/Dorvane/Rings"))
        , iMovie(user.caches + QStringLiteral("/Dorvane/iMovie")) {}

    QString root; // the only one that ends in a slash: it is shown to the user
    QString sounds;
    QString recordings;
    QString breaks; // the sound at the end of a break
    QString rings;
    QString iMovie;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundSources.h"

#include "platform/Bundle.h"

#include <QStandardPaths>

namespace dorvane {

SoundSources SoundSources::installed(const Bundle& bundle) {
    SoundSources sources;
    sources.systemSounds = bundle.resourcePath(QStringLiteral("Sounds"));
    sources.themeSounds = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString& folder : sources.themeSounds)
        folder += QStringLiteral("/sounds/freedesktop/stereo");
    sources.userSounds = bundle.resourcePath(QStringLiteral("UserSounds"));
    sources.iMovieResources = QStringLiteral("/Applications/iMovie.app/Contents/Resources");
    sources.iLifeEffects = sources.iMovieResources + QStringLiteral("/iLife Sound Effects");
    sources.iMovieEffects = sources.iMovieResources + QStringLiteral("/iMovie Sound Effects");
    return sources;
}

} // namespace dorvane

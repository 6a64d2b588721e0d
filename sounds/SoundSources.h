// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace dorvane {

class Bundle;

// The folders that the sound library is filled from. A plain value; none of them need exist.
struct SoundSources {
    // What this machine offers: the bundle's sounds, the desktop's sound theme, and the effects of
    // iMovie where its application folder was brought over.
    [[nodiscard]] static SoundSources installed(const Bundle& bundle);

    QString systemSounds;
    QStringList themeSounds; // an earlier folder's sound hides a later one's of the same name
    QString userSounds;
    QString iMovieResources; // tells whether iMovie is there at all
    QString iLifeEffects;
    QString iMovieEffects;
};

} // namespace dorvane

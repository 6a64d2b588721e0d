// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/FadingSound.h"

#include <list>
#include <memory>

namespace dorvane {

// Plays sounds, also several at once, and lets go of each when it has ended. Why a file stays
// silent is told in the player's log. Main thread only; destroying it ends the sounds.
class BreakSounds {
public:
    // Both must outlive this.
    BreakSounds(RunLoop& runLoop, SoundPlayer& player);
    ~BreakSounds();

    // Once, to its end.
    void play(const QString& path);

    // For 20 seconds at most, getting quieter from the tenth on.
    void playFaded(const QString& path);

    void stop();

private:
    using Sounds = std::list<std::unique_ptr<FadingSound>>;
    FadingSound& add(const QString& path);
    void forget(const FadingSound* ended);

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    // Expires with this object, so that nothing deferred reaches it later.
    std::shared_ptr<BreakSounds*> m_self;
    Sounds m_sounds;
};

} // namespace dorvane

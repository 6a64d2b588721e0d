// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/FadingSound.h"
#include "platform/Lifeline.h"

#include <cstdint>
#include <map>

namespace dorvane {

// Plays sounds, also several at once, and lets go of each when it has ended. Why a file stays
// silent is told in the player's log. Main thread only; destroying it ends the sounds.
class BreakSounds {
public:
    // Both must outlive this.
    BreakSounds(RunLoop& runLoop, SoundPlayer& player);

    // Once, to its end.
    void play(const QString& path);

    // For 20 seconds at most, getting quieter from the tenth on.
    void playFaded(const QString& path);

    void stop();

private:
    using Number = std::uint64_t;

    [[nodiscard]] Number add(const QString& path);
    void forget(Number ended);

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    std::map<Number, FadingSound> m_sounds;
    Number m_next = 0;
    Lifeline<BreakSounds> m_lifeline{*this};
};

} // namespace dorvane

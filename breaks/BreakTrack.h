// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/Hearing.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <memory>

namespace dorvane {

// A track that accompanies a break: over again for as long as the break lasts, also where the sound
// server or the output had gone, and quieter towards its end. Main thread only; destroying it ends
// the track.
class BreakTrack {
public:
    // All must outlive this.
    BreakTrack(RunLoop& runLoop, SoundPlayer& player, SoundOutput& output);

    // A file that cannot be played leaves the break silent; the player's log tells why.
    void play(const QString& path);

    // The break is over in so long: the last ten seconds of it fall silent by and by. To be called
    // again while time passes, and when the break is made longer or shorter.
    void setTimeLeft(RunLoop::Milliseconds time);

    void stop();

private:
    void startOver();
    void ended(bool isComplete);
    void fade();

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    Hearing m_hearing;
    std::unique_ptr<Sound> m_sound;
    RunLoop::Milliseconds m_silentAt{0}; // uptime
    RunLoopTimer m_fading;
    Lifeline<BreakTrack> m_lifeline{*this};
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <functional>
#include <list>
#include <memory>

namespace dorvane {

// Plays files several times, back to back, on its own: whoever asks keeps nothing, and nothing
// stops a sound early but destroying this. Main thread only.
class SoundRepeat {
public:
    SoundRepeat(RunLoop& runLoop, SoundPlayer& player);

    // Called in a turn of its own, when the last play is over or a play was refused; not when this
    // is destroyed, which it may do. Heard is what was heard whole at last: a server that went and
    // is there again in time counts, one that went for good does not.
    using Ended = std::function<void(bool isHeard)>;

    // Starts the file `times` times in all, each start one duration after the one before. A file
    // that cannot be played is dropped; the player says why in the log.
    void playSoundAtPath(const QString& path, int times, Ended ended = {});
    void play(std::unique_ptr<Sound> sound, int times, Ended ended = {});

private:
    // One file being repeated.
    struct Play {
        std::unique_ptr<Sound> sound;
        RunLoop::Milliseconds firstStart{0};
        int count = 0;
        int done = 0;
        Ended ended;
        bool isOver = false;    // the play that goes on was heard to its end by itself
        bool isHeard = false;   // whole, the play before
        bool isSettled = false; // whether firstStart is when the first play was really heard
        RunLoopTimer timer;
    };
    using Plays = std::list<Play>;

    void playAgain(Plays::iterator play);
    [[nodiscard]] bool settle(Plays::iterator play);
    [[nodiscard]] bool isStillHeard(Plays::iterator play);
    [[nodiscard]] static bool wasHeard(const Play& play);
    void drop(Plays::iterator play);

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    Plays m_plays;
    Lifeline<SoundRepeat> m_lifeline{*this};
};

} // namespace dorvane

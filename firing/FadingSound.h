// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <functional>
#include <memory>

namespace dorvane {

// A sound that may grow at its beginning, and may be played for a limited time and get quieter
// toward its end. Main thread only;
// destroying it stops the sound.
class FadingSound {
public:
    using Seconds = Sound::Seconds;

    FadingSound(RunLoop& runLoop, std::unique_ptr<Sound> sound);

    [[nodiscard]] Sound& sound() { return *m_sound; }

    // Plays; a sound longer than `fadeStart` gets quieter from then on and is stopped after
    // `playTime`, a shorter one plays to its end as it is. Both count from the moment at which it
    // is heard. A volume of zero is raised to a half first. False when the sound cannot be played.
    bool playFor(Seconds playTime, Seconds fadeStart);

    // Has the sound grow from a tenth of its volume to all of it within its first ten seconds, of
    // which so many have been heard already. To be called before it plays.
    void rise(Seconds heardAlready);

    void stop();

    // Whether playFor() has had its time.
    [[nodiscard]] bool isOver() const { return m_isOver; }

private:
    void whenHeardFor(Seconds time, RunLoopTimer& timer, std::function<void()> callback);
    void scheduleStop();
    void startFading(Seconds playTime, Seconds fadeStart);
    void fadeOutStep();
    void stopPlaying();

    RunLoop& m_runLoop;
    RunLoop::Milliseconds m_asked{0}; // the uptime of playFor()
    bool m_isOver = false;
    RunLoopTimer m_riseTimer;
    RunLoopTimer m_fadeTimer;
    RunLoopTimer m_stopTimer;
    // Last, so that it goes first and no callback of it meets a timer that is gone.
    std::unique_ptr<Sound> m_sound;
};

} // namespace dorvane

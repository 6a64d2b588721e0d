// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/SoundOutput.h"

#include <functional>
#include <memory>

namespace dorvane {

// Whether a sound was heard, and when to play it again: after a play that went to no output, as
// soon as there is one; and once after a play that broke off though there was. Main thread only.
class Hearing {
public:
    // All must outlive it. `again` is to play the sound once more; it is asked for within the
    // patience after the first play that nobody heard, and never from inside a call.
    Hearing(RunLoop& runLoop, SoundOutput& output, RunLoop::Milliseconds patience,
            std::function<void()> again);

    // A play begins.
    void begins();
    // It has ended by itself; whether it was heard whole.
    bool ended(bool isComplete);
    // Nothing is to be heard any more.
    void cancel();

private:
    void outputChanged(const SoundOutputState& state);
    void playAgain();

    RunLoop& m_runLoop;
    SoundOutput& m_output;
    const RunLoop::Milliseconds m_patience;
    const std::function<void()> m_again;
    std::unique_ptr<SoundOutput::Watch> m_watch; // from the first play until it was heard
    bool m_isOutputLost = false;
    bool m_isLost = false; // the play cannot have been heard whole
    bool m_isWaiting = false;
    int m_brokenOff = 0; // plays, though the output was well
    RunLoopTimer m_retry;
    RunLoopTimer m_end;
};

} // namespace dorvane

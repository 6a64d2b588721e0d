// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/FadingSound.h"
#include "platform/Lifeline.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace dorvane {

// The one sound that somebody plays at a time; let go of when it has ended. Main thread only;
// destroying it stops the sound.
class CurrentSound {
public:
    explicit CurrentSound(RunLoop& runLoop) : m_runLoop(runLoop) {}

    // Takes the place of the sound before, which falls silent. Valid until the sound has ended, or
    // the next call of a member. `ended` is called when the sound was let go of, unless another had
    // taken its place: true when it was heard to its end, or for as long as playFor() said.
    FadingSound& replace(std::unique_ptr<Sound> sound,
                         std::function<void(bool isComplete)> ended = {});

    void stop();

private:
    RunLoop& m_runLoop;
    std::unique_ptr<FadingSound> m_sound;
    std::uint64_t m_number = 0; // of m_sound: the end of an earlier one may be reported late
    Lifeline<CurrentSound> m_lifeline{*this};
};

} // namespace dorvane

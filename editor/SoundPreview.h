// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/CurrentSound.h"
#include "firing/SoundRepeat.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace dorvane {

// Lets the user hear a sound before it is set, one at a time. Main thread only; destroying it ends
// the sound.
class SoundPreview {
public:
    // Failed: the sound that was asked for last could not be played; why is told in the log.
    enum class State { Silent, Playing, Failed };

    // Both must outlive the preview. `changed` is called with each new state, also from inside the
    // members.
    SoundPreview(RunLoop& runLoop, SoundPlayer& player, std::function<void(State state)> changed);

    // These end what is being heard first; an empty path plays nothing.

    // As an alarm with a fade plays it: for 20 seconds at most, getting quieter from the tenth on.
    // `volume` is the slider's position, 0 to 255.
    void play(const QString& soundPath, int volume);

    // As a choice is answered: so many times, back to back.
    void playTimes(const QString& soundPath, int times);

    void stop();

    [[nodiscard]] bool isPlaying() const { return m_state == State::Playing; }

private:
    void setState(State state);
    void ended(std::uint64_t number, bool isHeard);

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    const std::function<void(State state)> m_changed;
    State m_state = State::Silent;
    std::uint64_t m_number = 0; // of the sound: the end of an earlier one may be reported late
    CurrentSound m_demoSound;
    std::unique_ptr<SoundRepeat> m_repeats;
};

// The volume of a sound at a position of the slider, 0 to 255.
[[nodiscard]] float previewVolume(int sliderValue);

// The slider's tool tip, "Using volume  50%".
[[nodiscard]] QString previewVolumeToolTip(int sliderValue);

} // namespace dorvane

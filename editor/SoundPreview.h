// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/CurrentSound.h"

#include <QString>

namespace dorvane {

class SoundPlayer;

// Lets the user hear a sound before it is chosen: one at a time, for 20 seconds at most, getting
// quieter from the tenth on. Main thread only; destroying it ends the sound.
class SoundPreview {
public:
    // Both must outlive the preview.
    SoundPreview(RunLoop& runLoop, SoundPlayer& player);

    // Ends what is being heard and plays the file; an empty path plays nothing. `volume` is the
    // slider's position, 0 to 255. Why a file stays silent is told in the log.
    void play(const QString& soundPath, int volume);

private:
    SoundPlayer& m_player;
    CurrentSound m_demoSound;
};

// The volume of a sound at a position of the slider, 0 to 255.
[[nodiscard]] float previewVolume(int sliderValue);

// The slider's tool tip, "Using volume  50%".
[[nodiscard]] QString previewVolumeToolTip(int sliderValue);

} // namespace dorvane

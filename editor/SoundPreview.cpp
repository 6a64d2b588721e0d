// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SoundPreview.h"

#include "platform/Sound.h"

namespace dorvane {

using namespace std::chrono_literals;

SoundPreview::SoundPreview(RunLoop& runLoop, SoundPlayer& player)
    : m_player(player), m_demoSound(runLoop) {}

void SoundPreview::play(const QString& soundPath, int volume) {
    m_demoSound.stop();
    if (soundPath.isEmpty())
        return;
    FadingSound& demo = m_demoSound.replace(m_player.soundWithContentsOfFile(soundPath));
    // At its lowest position the slider does not speak: the sound keeps its own, full volume.
    if (volume != 0)
        demo.sound().setVolume(previewVolume(volume));
    demo.playFor(20s, 10s);
}

float previewVolume(int sliderValue) {
    return float(sliderValue) / 255.0F;
}

// By 256ths, unlike the volume, which goes by 255ths. Meant: it only shows in the last per cent.
QString previewVolumeToolTip(int sliderValue) {
    return QString::asprintf("Using volume %3.0f%%", sliderValue * 0.00390625 * 100);
}

} // namespace dorvane

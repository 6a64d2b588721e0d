// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SoundPreview.h"

#include "firing/FadingSound.h"
#include "platform/Sound.h"

namespace dorvane {

using namespace std::chrono_literals;

SoundPreview::SoundPreview(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player), m_self(std::make_shared<SoundPreview*>(this)) {}

SoundPreview::~SoundPreview() = default;

void SoundPreview::play(const QString& soundPath, int volume) {
    m_demoSound.reset();
    if (soundPath.isEmpty())
        return;
    m_demoSound =
        std::make_unique<FadingSound>(m_runLoop, m_player.soundWithContentsOfFile(soundPath));
    m_demoSound->sound().setFinished(
        [this, finished = m_demoSound.get()](bool) { forget(finished); });
    // At its lowest position the slider does not speak: the sound keeps its own, full volume.
    if (volume != 0)
        m_demoSound->sound().setVolume(previewVolume(volume));
    m_demoSound->playFor(20s, 10s);
}

// Not from inside the sound's own callback.
void SoundPreview::forget(const FadingSound* finished) {
    m_runLoop.defer([weak = std::weak_ptr(m_self), finished] {
        if (const auto self = weak.lock(); self && (*self)->m_demoSound.get() == finished)
            (*self)->m_demoSound.reset();
    });
}

float previewVolume(int sliderValue) {
    return float(sliderValue) / 255.0F;
}

// By 256ths, unlike the volume, which goes by 255ths. Meant: it only shows in the last per cent.
QString previewVolumeToolTip(int sliderValue) {
    return QString::asprintf("Using volume %3.0f%%", sliderValue * 0.00390625 * 100);
}

} // namespace dorvane

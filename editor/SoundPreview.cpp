// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SoundPreview.h"

#include "platform/Sound.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr auto longest = 20s;

} // namespace

SoundPreview::SoundPreview(RunLoop& runLoop, SoundPlayer& player,
                           std::function<void(State state)> changed)
    : m_runLoop(runLoop), m_player(player), m_changed(std::move(changed)), m_demoSound(runLoop) {}

void SoundPreview::play(const QString& soundPath, int volume) {
    stop();
    if (soundPath.isEmpty())
        return;
    FadingSound& demo = m_demoSound.replace(
        m_player.soundWithContentsOfFile(soundPath),
        [this, number = m_number](bool isComplete) { ended(number, isComplete); });
    // At its lowest position the slider does not speak: the sound keeps its own, full volume.
    if (volume != 0)
        demo.sound().setVolume(previewVolume(volume));
    setState(State::Playing);
    if (!demo.playFor(longest, 10s))
        ended(m_number, false);
}

void SoundPreview::playTimes(const QString& soundPath, int times) {
    stop();
    if (soundPath.isEmpty())
        return;
    m_repeats = std::make_unique<SoundRepeat>(m_runLoop, m_player);
    setState(State::Playing);
    m_repeats->playSoundAtPath(soundPath, times,
                               [this, number = m_number](bool isHeard) { ended(number, isHeard); });
}

void SoundPreview::stop() {
    ++m_number;
    m_demoSound.stop();
    m_repeats.reset();
    setState(State::Silent);
}

void SoundPreview::ended(std::uint64_t number, bool isHeard) {
    if (number != m_number)
        return;
    m_repeats.reset();
    setState(isHeard ? State::Silent : State::Failed);
}

void SoundPreview::setState(State state) {
    if (state != std::exchange(m_state, state))
        m_changed(state);
}

float previewVolume(int sliderValue) {
    return float(sliderValue) / 255.0F;
}

// By 256ths, unlike the volume, which goes by 255ths. Meant: it only shows in the last per cent.
QString previewVolumeToolTip(int sliderValue) {
    return QString::asprintf("Using volume %3.0f%%", sliderValue * 0.00390625 * 100);
}

} // namespace dorvane

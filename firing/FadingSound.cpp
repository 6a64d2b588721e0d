// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/FadingSound.h"

#include <algorithm>

namespace dorvane {

namespace {

RunLoop::Milliseconds milliseconds(Sound::Seconds seconds) {
    return std::chrono::round<RunLoop::Milliseconds>(seconds);
}

} // namespace

FadingSound::FadingSound(RunLoop& runLoop, std::unique_ptr<Sound> sound)
    : m_runLoop(runLoop), m_sound(std::move(sound)) {}

bool FadingSound::playFor(Seconds playTime, Seconds fadeStart) {
    if (m_sound->volume() == 0.0f)
        m_sound->setVolume(0.5f);
    if (!m_sound->play())
        return false;
    m_sound->whenLoaded([this, playTime, fadeStart] { scheduleFade(playTime, fadeStart); });
    return true;
}

void FadingSound::stop() {
    m_fadeTimer.cancel();
    m_stopTimer.cancel();
    m_sound->stop();
}

// These timers go on while a menu is open: what is heard must not depend on what is looked at.
void FadingSound::scheduleFade(Seconds playTime, Seconds fadeStart) {
    if (!m_sound->isPlaying() || m_sound->duration() <= fadeStart)
        return;
    m_fadeTimer = m_runLoop.scheduleOnce(
        milliseconds(fadeStart), [this, playTime, fadeStart] { startFading(playTime, fadeStart); },
        RunLoopMode::Common);
    m_stopTimer = m_runLoop.scheduleOnce(
        milliseconds(playTime), [this] { stopPlaying(); }, RunLoopMode::Common);
}

void FadingSound::startFading(Seconds playTime, Seconds fadeStart) {
    const Seconds end = std::min(m_sound->duration(), playTime);
    // Fifty steps of a hundredth over the time that is left: down to half, not to silence. The end
    // is to be noticed as an end, not slept through.
    const Seconds step = (end - fadeStart) * 0.01 * 2;
    m_fadeTimer = m_runLoop.scheduleRepeating(
        milliseconds(step), [this] { fadeOutStep(); }, RunLoopMode::Common);
}

void FadingSound::fadeOutStep() {
    if (m_sound->isPlaying())
        m_sound->setVolume(m_sound->volume() - 0.01f);
    else
        m_fadeTimer.cancel();
}

void FadingSound::stopPlaying() {
    if (m_sound->isPlaying())
        m_sound->stop();
}

} // namespace dorvane

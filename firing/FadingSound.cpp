// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/FadingSound.h"

#include <algorithm>

namespace dorvane {

namespace {

constexpr Sound::Seconds riseTime(10);
constexpr Sound::Seconds riseStep(0.2);
constexpr float softest = 0.1F;

RunLoop::Milliseconds milliseconds(Sound::Seconds seconds) {
    return std::chrono::round<RunLoop::Milliseconds>(seconds);
}

} // namespace

FadingSound::FadingSound(RunLoop& runLoop, std::unique_ptr<Sound> sound)
    : m_runLoop(runLoop), m_sound(std::move(sound)) {}

bool FadingSound::playFor(Seconds playTime, Seconds fadeStart) {
    if (m_sound->volume() == 0.0f)
        m_sound->setVolume(0.5f);
    m_asked = m_runLoop.uptime();
    m_isOver = false;
    if (!m_sound->play())
        return false;
    m_sound->whenLoaded([this, playTime, fadeStart] {
        if (m_sound->duration() <= fadeStart)
            return;
        whenHeardFor(fadeStart, m_fadeTimer,
                     [this, playTime, fadeStart] { startFading(playTime, fadeStart); });
        whenHeardFor(playTime - Sound::latestStart, m_stopTimer, [this] { scheduleStop(); });
    });
    return true;
}

void FadingSound::rise(Seconds heardAlready) {
    const auto grow = [this, heardAlready] {
        const Seconds time = heardAlready + m_sound->currentTime();
        const bool isOver = time >= riseTime - riseStep; // before a fade begins
        m_sound->setVolume(isOver ? 1 : softest + (1 - softest) * float(time / riseTime));
        if (isOver)
            m_riseTimer.cancel();
    };
    grow();
    if (heardAlready < riseTime)
        m_riseTimer =
            m_runLoop.scheduleRepeating(milliseconds(riseStep), grow, RunLoopMode::Common);
}

// A sound may be heard later than it was asked for, and its position says by how much. The timers
// go on while a menu is open: what is heard must not depend on what is looked at.
void FadingSound::whenHeardFor(Seconds time, RunLoopTimer& timer, std::function<void()> callback) {
    if (!m_sound->isPlaying())
        return;
    const auto missing = milliseconds(time - m_sound->currentTime());
    if (missing <= RunLoop::Milliseconds(0)) {
        callback();
        return;
    }
    timer = m_runLoop.scheduleOnce(
        missing,
        [this, time, &timer, callback = std::move(callback)] {
            whenHeardFor(time, timer, callback);
        },
        RunLoopMode::Common);
}

// Called when the sound has been heard for all but the last quarter of a second, by which a stop
// makes up for a late start.
void FadingSound::scheduleStop() {
    const auto late = milliseconds(m_runLoop.uptime() - m_asked - m_sound->currentTime());
    m_stopTimer = m_runLoop.scheduleOnce(
        Sound::latestStart - std::clamp(late, RunLoop::Milliseconds(0), Sound::latestStart),
        [this] { stopPlaying(); }, RunLoopMode::Common);
}

void FadingSound::stop() {
    m_riseTimer.cancel();
    m_fadeTimer.cancel();
    m_stopTimer.cancel();
    m_sound->stop();
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
    if (!m_sound->isPlaying())
        return;
    m_isOver = true;
    m_sound->stop();
}

} // namespace dorvane

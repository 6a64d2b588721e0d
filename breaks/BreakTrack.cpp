// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakTrack.h"

#include <algorithm>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 24h; // the break ends it sooner
constexpr RunLoop::Milliseconds fadeTime = 10s;

} // namespace

BreakTrack::BreakTrack(RunLoop& runLoop, SoundPlayer& player, SoundOutput& output)
    : m_runLoop(runLoop)
    , m_player(player)
    , m_hearing(runLoop, output, patience, [this] { startOver(); }) {}

void BreakTrack::play(const QString& path) {
    stop();
    m_sound = m_player.soundWithContentsOfFile(path);
    m_sound->setFinished([this](bool isComplete) {
        m_runLoop.defer(
            m_lifeline.guard([isComplete](BreakTrack& self) { self.ended(isComplete); }));
    });
    startOver();
}

void BreakTrack::startOver() {
    m_hearing.begins();
    if (!m_sound->play())
        ended(false);
}

void BreakTrack::ended(bool isComplete) {
    if (!m_sound)
        return; // it was stopped
    if (m_sound->fault() != SoundFault::None)
        m_hearing.cancel();
    else if (m_hearing.ended(isComplete))
        startOver();
}

void BreakTrack::setTimeLeft(RunLoop::Milliseconds time) {
    m_silentAt = m_runLoop.uptime() + time;
    const bool isEnding = time <= fadeTime;
    if (!m_sound || isEnding == static_cast<bool>(m_fading))
        return;
    if (isEnding) {
        m_fading = m_runLoop.scheduleRepeating(
            100ms, [this] { fade(); }, RunLoopMode::Common);
    } else {
        m_fading.cancel();
        m_sound->setVolume(1);
    }
}

void BreakTrack::fade() {
    const auto left = std::max(m_silentAt - m_runLoop.uptime(), RunLoop::Milliseconds(0));
    m_sound->setVolume(float(left.count()) / float(fadeTime.count()));
}

void BreakTrack::stop() {
    m_fading.cancel();
    m_hearing.cancel();
    m_sound.reset();
}

} // namespace dorvane

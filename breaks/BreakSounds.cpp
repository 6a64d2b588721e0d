// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakSounds.h"

namespace dorvane {

using namespace std::chrono_literals;

BreakSounds::BreakSounds(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player) {}

void BreakSounds::play(const QString& path) {
    const Number number = add(path);
    if (!m_sounds.at(number).sound().play())
        forget(number);
}

void BreakSounds::playFaded(const QString& path) {
    const Number number = add(path);
    if (!m_sounds.at(number).playFor(20s, 10s))
        forget(number);
}

void BreakSounds::stop() {
    for (auto& [number, sound] : m_sounds)
        sound.stop();
}

BreakSounds::Number BreakSounds::add(const QString& path) {
    const Number number = m_next++;
    const auto added =
        m_sounds.try_emplace(number, m_runLoop, m_player.soundWithContentsOfFile(path)).first;
    added->second.sound().setFinished([this, number](bool) { forget(number); });
    return number;
}

// Later, since this may run inside a callback of the very sound.
void BreakSounds::forget(Number ended) {
    m_runLoop.defer(m_lifeline.guard([ended](BreakSounds& self) { self.m_sounds.erase(ended); }));
}

} // namespace dorvane

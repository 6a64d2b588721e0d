// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCall.h"

namespace dorvane {

using namespace std::chrono_literals;

BreakCall::BreakCall(RunLoop& runLoop, SoundPlayer& player, SoundOutput& output,
                     RunLoop::Milliseconds patience)
    : m_player(player)
    , m_hearing(runLoop, output, patience, [this] { begin(); })
    , m_sound(runLoop) {}

void BreakCall::play(const QString& path) {
    stop();
    m_path = path;
    if (!m_path.isEmpty())
        begin();
}

void BreakCall::begin() {
    m_hearing.begins();
    FadingSound& sound =
        m_sound.replace(m_player.soundWithContentsOfFile(m_path), [this](bool isComplete) {
            if (!m_path.isEmpty() && m_hearing.ended(isComplete))
                m_path.clear();
        });
    if (!sound.playFor(20s, 10s))
        m_hearing.ended(false);
    sound.sound().whenLoaded([this, &sound] {
        if (sound.sound().fault() != SoundFault::None)
            stop();
    });
}

void BreakCall::stop() {
    m_path.clear();
    m_hearing.cancel();
    m_sound.stop();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakSounds.h"

namespace dorvane {

using namespace std::chrono_literals;

BreakSounds::BreakSounds(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player), m_self(std::make_shared<BreakSounds*>(this)) {}

BreakSounds::~BreakSounds() = default;

void BreakSounds::play(const QString& path) {
    FadingSound& added = add(path);
    if (!added.sound().play())
        forget(&added);
}

void BreakSounds::playFaded(const QString& path) {
    FadingSound& added = add(path);
    if (!added.playFor(20s, 10s))
        forget(&added);
}

void BreakSounds::stop() {
    for (const auto& sound : m_sounds)
        sound->stop();
}

FadingSound& BreakSounds::add(const QString& path) {
    auto sound = std::make_unique<FadingSound>(m_runLoop, m_player.soundWithContentsOfFile(path));
    FadingSound* const added = m_sounds.emplace_back(std::move(sound)).get();
    added->sound().setFinished([this, added](bool) { forget(added); });
    return *added;
}

// Later, since this may run inside a callback of the very sound.
void BreakSounds::forget(const FadingSound* ended) {
    m_runLoop.defer([weak = std::weak_ptr(m_self), ended] {
        if (const auto self = weak.lock())
            (*self)->m_sounds.remove_if([=](const auto& sound) { return sound.get() == ended; });
    });
}

} // namespace dorvane

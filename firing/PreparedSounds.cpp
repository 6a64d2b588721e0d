// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/PreparedSounds.h"

#include <algorithm>

namespace dorvane {

using namespace std::chrono_literals;

PreparedSounds::PreparedSounds(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player) {}

void PreparedSounds::prepare(const QString& path) {
    auto isLoaded = std::make_shared<bool>(false);
    auto sound = m_player.ringWithContentsOfFile(path);
    sound->whenLoaded([isLoaded] { *isLoaded = true; });
    const auto added = m_prepared.insert(m_prepared.end(),
                                         Prepared{path, std::move(sound), std::move(isLoaded), {}});
    added->expiry = m_runLoop.scheduleOnce(
        30s, [this, added] { m_prepared.erase(added); }, RunLoopMode::Common);
}

std::unique_ptr<Sound> PreparedSounds::take(const QString& path) {
    const auto found = std::find_if(m_prepared.begin(), m_prepared.end(),
                                    [&](const Prepared& each) { return each.path == path; });
    std::unique_ptr<Sound> sound;
    if (found != m_prepared.end()) {
        const bool hasFailed = *found->isLoaded && found->sound->duration() == Sound::Seconds(0);
        if (!hasFailed)
            sound = std::move(found->sound);
        m_prepared.erase(found);
    }
    return sound ? std::move(sound) : m_player.ringWithContentsOfFile(path);
}

} // namespace dorvane

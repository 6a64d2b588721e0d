// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/CurrentSound.h"

namespace dorvane {

FadingSound& CurrentSound::replace(std::unique_ptr<Sound> sound,
                                   std::function<void(bool isComplete)> ended) {
    stop();
    m_sound = std::make_unique<FadingSound>(m_runLoop, std::move(sound));
    m_sound->sound().setFinished(
        [this, number = ++m_number, ended = std::move(ended)](bool isComplete) {
            // Not from inside the sound's own callback.
            m_runLoop.defer(m_lifeline.guard([number, ended, isComplete](CurrentSound& self) {
                if (number != self.m_number)
                    return;
                const auto over = std::move(self.m_sound);
                if (ended)
                    ended(isComplete || (over && over->isOver()));
            }));
        });
    return *m_sound;
}

void CurrentSound::stop() {
    if (m_sound)
        m_sound->stop();
}

} // namespace dorvane

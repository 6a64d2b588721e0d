// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/SoundModule.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace dorvane {

// A sound that was decoded once and is held in memory: playing it leans on no disk and no thread.
struct KeptSound {
    std::vector<float> samples; // as read by a decoder

    [[nodiscard]] Sound::Seconds duration() const {
        return Sound::Seconds(static_cast<double>(samples.size() / soundChannels) / soundRate);
    }
};

class KeptDecoder final : public SoundDecoder {
public:
    KeptDecoder(std::shared_ptr<const KeptSound> sound, Sound::Seconds at)
        : m_sound(std::move(sound)), m_start(std::min(at, m_sound->duration())) {
        m_next = static_cast<std::size_t>(m_start.count() * soundRate) * soundChannels;
    }

    [[nodiscard]] Sound::Seconds start() const override { return m_start; }
    [[nodiscard]] std::size_t read(float* out, std::size_t frames) override {
        const std::size_t count =
            std::min(frames * soundChannels, m_sound->samples.size() - m_next);
        std::copy_n(m_sound->samples.data() + m_next, count, out);
        m_next += count;
        return count / soundChannels;
    }

private:
    const std::shared_ptr<const KeptSound> m_sound;
    const Sound::Seconds m_start;
    std::size_t m_next = 0; // sample
};

} // namespace dorvane

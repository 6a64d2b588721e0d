// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/SoundModule.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace dorvane {

// The last frames that were sent to the server, which may not have been heard yet.
class PcmHistory {
public:
    // How many frames are kept at least.
    void setReach(std::size_t frames) { m_reach = frames; }

    void append(const float* samples, std::size_t frames) {
        // Cut back rarely, so that each sample is moved once at most.
        const std::size_t kept = m_samples.size() / soundChannels;
        if (kept > 2 * m_reach)
            m_samples.erase(m_samples.begin(),
                            m_samples.begin() +
                                static_cast<std::ptrdiff_t>((kept - m_reach) * soundChannels));
        m_samples.insert(m_samples.end(), samples, samples + frames * soundChannels);
        m_end += static_cast<std::int64_t>(frames);
    }

    // Frames are numbered from the first that was ever appended.
    [[nodiscard]] std::int64_t begin() const {
        return m_end - static_cast<std::int64_t>(m_samples.size() / soundChannels);
    }
    [[nodiscard]] std::int64_t end() const { return m_end; }

    // Everything from `frame`, which lies between begin() and end().
    [[nodiscard]] std::vector<float> from(std::int64_t frame) const {
        const auto skip = (frame - begin()) * static_cast<std::int64_t>(soundChannels);
        return {m_samples.begin() + static_cast<std::ptrdiff_t>(skip), m_samples.end()};
    }

private:
    std::vector<float> m_samples;
    std::size_t m_reach = soundRate / 4;
    std::int64_t m_end = 0;
};

} // namespace dorvane

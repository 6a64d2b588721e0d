// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace dorvane {

// Applies a volume to stereo samples. A change is spread over 20 ms: a step, small as it may be,
// would be heard as a click.
class GainRamp {
public:
    explicit GainRamp(float gain) : m_gain(gain), m_target(gain) {}

    void apply(float target, float* samples, std::size_t frames) {
        if (target != m_target) {
            m_target = target;
            m_left = rampFrames;
        }
        for (std::size_t i = 0; i < frames; ++i) {
            if (m_left > 0) {
                m_gain += (m_target - m_gain) / static_cast<float>(m_left);
                --m_left;
            }
            samples[2 * i] *= m_gain;
            samples[2 * i + 1] *= m_gain;
        }
    }

private:
    static constexpr std::size_t rampFrames = 960;

    float m_gain;
    float m_target;
    std::size_t m_left = 0;
};

} // namespace dorvane

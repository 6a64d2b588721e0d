// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundLikeness.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace dorvane {

namespace {

// Quieter than the last bit of a disc is no sound.
constexpr float silence = 1.0F / 65536;

double energy(const float* samples, std::size_t count) {
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += double(samples[i]) * double(samples[i]);
    return sum;
}

double product(const float* a, const float* b, std::size_t count) {
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += double(a[i]) * double(b[i]);
    return sum;
}

} // namespace

std::optional<double> likeness(const std::vector<float>& heard,
                               const std::vector<float>& expected) {
    const std::size_t length = expected.size();
    const bool isSilent = std::all_of(heard.begin(), heard.end(),
                                      [](float sample) { return std::abs(sample) < silence; });
    if (isSilent || heard.size() < length || length == 0)
        return std::nullopt;
    const double expectedEnergy = energy(expected.data(), length);
    const double floor = double(silence) * double(silence) * double(length);
    double heardEnergy = energy(heard.data(), length);
    double best = 0;
    for (std::size_t at = 0; at + length <= heard.size(); ++at) {
        if (at > 0)
            heardEnergy += energy(&heard[at + length - 1], 1) - energy(&heard[at - 1], 1);
        if (heardEnergy > floor)
            best = std::max(best, product(&heard[at], expected.data(), length) /
                                      std::sqrt(heardEnergy * expectedEnergy));
    }
    return best;
}

std::vector<float> coarser(const std::vector<float>& samples, std::size_t factor) {
    std::vector<float> means;
    for (std::size_t at = 0; at + factor <= samples.size(); at += factor) {
        float sum = 0;
        for (std::size_t i = 0; i < factor; ++i)
            sum += samples[at + i];
        means.push_back(sum / static_cast<float>(factor));
    }
    return means;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <vector>

namespace dorvane::testing {

// How far everything else lies below a tone of this frequency, in decibels: the tone that fits the
// samples best is taken out, and what is left is compared with it. Frames are 48 kHz.
inline double purity(const std::vector<float>& samples, double frequency) {
    double ss = 0, cc = 0, sc = 0, sy = 0, cy = 0, total = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double phase = 2 * M_PI * frequency * static_cast<double>(i) / 48000;
        const double s = std::sin(phase), c = std::cos(phase);
        const auto y = static_cast<double>(samples[i]);
        ss += s * s, cc += c * c, sc += s * c, sy += s * y, cy += c * y, total += y * y;
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (sy * cc - cy * sc) / determinant, b = (cy * ss - sy * sc) / determinant;
    const double tone = a * sy + b * cy; // the energy of the tone that fits
    return 10 * std::log10(tone / (total - tone));
}

} // namespace dorvane::testing

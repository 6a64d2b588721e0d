// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <vector>

namespace dorvane {

// How much the stretch of `heard` that is most like `expected` is like it, however loud: 1 for the
// same, near 0 for anything else. Nothing when no sound was heard at all. Both at one rate; slow.
[[nodiscard]] std::optional<double> likeness(const std::vector<float>& heard,
                                             const std::vector<float>& expected);

// Every `factor` samples as their mean.
[[nodiscard]] std::vector<float> coarser(const std::vector<float>& samples, std::size_t factor);

} // namespace dorvane

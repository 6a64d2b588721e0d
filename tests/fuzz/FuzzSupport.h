// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace dorvane::testing {

// Ends the run, with the input kept, when something that must hold does not.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace dorvane::testing

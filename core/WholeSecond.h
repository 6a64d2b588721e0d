// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"

namespace dorvane {

// Alarms are looked at on the whole seconds of the wall clock, and due times lie on whole seconds.
// So what an alarm's seconds to go are right after a whole second they stay until the next one,
// while exactly on it they still have their former value; which of the two a timer would see is
// chance. Every look is therefore made at the moment right after the last whole second.
[[nodiscard]] inline Instant rightAfterWholeSecond(Instant now) {
    return std::chrono::floor<std::chrono::seconds>(now) + std::chrono::milliseconds(1);
}

// The next time to look: always ahead of `now`.
[[nodiscard]] inline Instant nextWholeSecond(Instant now) {
    return std::chrono::floor<std::chrono::seconds>(now) + std::chrono::seconds(1);
}

} // namespace dorvane

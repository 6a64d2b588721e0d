// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"

namespace dorvane {

// The moment right after the last whole second. Due times lie on whole seconds, so what an alarm's
// seconds to go are at this moment they stay until the next whole second, while exactly on the
// whole second they still have their former value. A pass that is made once a second, on the whole
// second, looks at this moment.
[[nodiscard]] inline Instant rightAfterWholeSecond(Instant now) {
    return std::chrono::floor<std::chrono::seconds>(now) + std::chrono::milliseconds(1);
}

} // namespace dorvane

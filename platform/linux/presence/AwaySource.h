// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <functional>
#include <optional>

namespace dorvane {

// Somebody who does nothing for so long counts as away.
inline constexpr RunLoop::Milliseconds idleTime = std::chrono::minutes(1);

// One of those who may know whether somebody is there. Main thread only.
class AwaySource {
public:
    // Since when nobody is there, by RunLoop::sinceBoot(); nothing while somebody is.
    using Told = std::function<void(std::optional<RunLoop::Milliseconds> awaySince)>;

    virtual ~AwaySource() = default;

    // Calls back as soon as it turns out that there is somebody who knows, and then at each change;
    // never where there is not, and never from inside this call. Called once.
    virtual void watch(Told told) = 0;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane {

// The machine's power messages. Sleep is never vetoed or delayed. Main thread only.
class PowerMonitor {
public:
    virtual ~PowerMonitor() = default;

    // Called each time the machine has woken. Where the machine's messages cannot be had, it is
    // never called.
    virtual void setPoweredOn(std::function<void()> poweredOn) = 0;
};

} // namespace dorvane

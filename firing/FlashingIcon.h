// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// The icon that flashes while an alarm rings. Main thread only.
class FlashingIcon {
public:
    virtual ~FlashingIcon() = default;

    // Starts flashing; while it flashes already, nothing happens.
    virtual void startFlashing() = 0;

    // Ends the flashing, whoever started it; while nothing flashes, nothing happens.
    virtual void stopFlashing() = 0;
};

} // namespace dorvane

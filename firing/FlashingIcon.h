// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// The status icon as ringing sees it: something that flashes.
class FlashingIcon {
public:
    virtual ~FlashingIcon() = default;

    virtual void startFlashing() = 0;
    virtual void stopFlashing() = 0;
};

} // namespace dorvane

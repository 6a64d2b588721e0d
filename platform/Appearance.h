// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane {

// Whether the desktop is set to light or dark. Main thread only.
class Appearance {
public:
    virtual ~Appearance() = default;

    [[nodiscard]] virtual bool isDark() const = 0;

    // Called after isDark() changed.
    virtual void setChanged(std::function<void()> changed) = 0;
};

} // namespace dorvane

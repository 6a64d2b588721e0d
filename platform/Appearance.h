// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane {

// Whether the desktop is set to light or dark. Main thread only.
class Appearance {
public:
    virtual ~Appearance() = default;

    [[nodiscard]] virtual bool isDark() const = 0;

    // Of the panel, which some desktops have dark always.
    [[nodiscard]] virtual bool isPanelDark() const { return isDark(); }

    // Called after isDark() changed, and with it perhaps isPanelDark().
    virtual void setChanged(std::function<void()> changed) = 0;
};

} // namespace dorvane

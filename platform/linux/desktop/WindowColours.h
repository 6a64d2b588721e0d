// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace dorvane {

// The colours of all our windows and menus: those of the desktop's theme, and ones of our own where
// the user wants dark and the theme stays light, or the other way round. Needs the application
// object; main thread only.
class WindowColours {
public:
    // What the user wants; nothing to leave it to the theme.
    void follow(std::optional<bool> dark);

private:
    std::optional<bool> m_ours; // whether they are dark; nothing while they are the theme's
};

// Whether the application's present colours are light on dark.
[[nodiscard]] bool windowsAreDark();

} // namespace dorvane

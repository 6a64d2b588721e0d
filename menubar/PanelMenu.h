// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuEntry.h"
#include "platform/PanelMenuEntry.h"

#include <vector>

namespace dorvane {

// The main menu for a panel to draw. A panel has one size of type, so a subtitle follows its title,
// cut to about what our own menu shows of it. It cannot have an entry that both acts and opens a
// submenu, so the action of such an entry is the first one of its submenu.
[[nodiscard]] std::vector<PanelMenuEntry> panelMenu(const std::vector<MenuEntry>& entries,
                                                    const MenuCommands& commands);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuEntry.h"

#include <vector>

namespace dorvane {

class RunLoop;
class StatusMenu;

// Keeps the items of our pop-up equal to a tree of entries. Items are made anew only where entries
// come or go; otherwise they just change their texts and commands.
class MenuRows {
public:
    // The menu, which has its submenus made like itself, and the run loop must outlive the rows.
    MenuRows(StatusMenu& menu, RunLoop& runLoop, MenuCommands commands);

    // Not to be called while the menu handles an event: its submenus are deleted.
    void show(const std::vector<MenuEntry>& entries);

private:
    void fill(StatusMenu& menu, const std::vector<MenuEntry>& entries);
    void build(StatusMenu& menu, const std::vector<MenuEntry>& entries);

    StatusMenu& m_menu;
    RunLoop& m_runLoop;
    MenuCommands m_commands;
};

} // namespace dorvane

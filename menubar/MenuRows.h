// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuEntry.h"
#include "menubar/MenuItemExtras.h"

#include <functional>
#include <vector>

class QMenu;

namespace dorvane {

class RunLoop;

// Keeps the items of a menu equal to a tree of entries. Items are made anew only where entries
// come or go; otherwise they just change their texts and commands, so that a menu that a panel has
// open stays open.
class MenuRows {
public:
    // How the two kinds of menu differ.
    struct Kind {
        std::function<QMenu*(QMenu& parent)> makeSubmenu; // owned by the parent
        std::function<QString(const MenuItemExtras& item)> text;
    };

    // The menu, the run loop and what the kind refers to must outlive the rows.
    MenuRows(QMenu& menu, RunLoop& runLoop, MenuCommands commands, MenuTitleFonts fonts, Kind kind);

    // Not to be called while the menu handles an event: its submenus are deleted.
    void show(const std::vector<MenuEntry>& entries);

private:
    void fill(QMenu& menu, const std::vector<MenuEntry>& entries);
    void build(QMenu& menu, const std::vector<MenuEntry>& entries);

    QMenu& m_menu;
    RunLoop& m_runLoop;
    MenuCommands m_commands;
    MenuTitleFonts m_fonts;
    Kind m_kind;
};

} // namespace dorvane

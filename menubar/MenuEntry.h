// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuCommands.h"

#include <QString>

#include <functional>
#include <variant>
#include <vector>

namespace dorvane {

// One entry of the main menu as a value, with the entries of its submenu. An entry with neither a
// command nor children is a heading.
struct MenuEntry {
    // One of the members of MenuCommands, by the argument that it takes.
    using Command = std::variant<std::monostate, std::function<void()> MenuCommands::*,
                                 std::function<void(int)> MenuCommands::*,
                                 std::function<void(const AlarmPtr&)> MenuCommands::*>;

    QString title;
    QString subtitle;
    Command command;
    int number = 0; // for a command that takes one
    AlarmPtr alarm; // the alarm that the entry stands for, and the argument of its command
    std::vector<MenuEntry> children;
    bool isSeparator = false;
};

// What the entry does; empty when it has no command, or one that is not there.
[[nodiscard]] std::function<void()> commandOf(const MenuEntry& entry, const MenuCommands& commands);

} // namespace dorvane

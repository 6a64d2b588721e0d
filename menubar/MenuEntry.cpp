// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuEntry.h"

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

// Binds the argument of a command, unless the command is not there.
struct Bind {
    const MenuEntry& entry;
    const MenuCommands& commands;

    std::function<void()> operator()(std::monostate) const { return {}; }
    std::function<void()> operator()(std::function<void()> MenuCommands::*member) const {
        return commands.*member;
    }
    std::function<void()> operator()(std::function<void(int)> MenuCommands::*member) const {
        if (!(commands.*member))
            return {};
        return [command = commands.*member, minutes = entry.minutes] { command(minutes); };
    }
    std::function<void()>
    operator()(std::function<void(const AlarmPtr&)> MenuCommands::*member) const {
        if (!(commands.*member))
            return {};
        return [command = commands.*member, alarm = entry.alarm] { command(alarm); };
    }
};

} // namespace

std::function<void()> commandOf(const MenuEntry& entry, const MenuCommands& commands) {
    return std::visit(Bind{entry, commands}, entry.command);
}

std::vector<MenuEntry> exportedEntries(std::vector<MenuEntry> entries) {
    for (MenuEntry& entry : entries) {
        const bool acts = !std::holds_alternative<std::monostate>(entry.command);
        if (!acts || entry.children.empty())
            continue;
        MenuEntry action;
        action.title = QStringLiteral("Set");
        action.command = std::exchange(entry.command, {});
        action.alarm = entry.alarm;
        entry.children.push_back(std::move(action));
        std::rotate(entry.children.begin(), entry.children.end() - 1, entry.children.end());
    }
    return entries;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuEntry.h"

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
        return [command = commands.*member, number = entry.number] { command(number); };
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

} // namespace dorvane

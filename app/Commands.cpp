// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

#include "app/CheckCommand.h"
#include "app/MissedCommand.h"
#include "cli/RemoteCommands.h"
#include "platform/linux/control/BusProgram.h"
#include "platform/linux/session/QtRunLoop.h"

namespace dorvane {

namespace {

// Made when a command needs it, never destroyed: it must not outlive the application object.
RemoteProgram& program() {
    static auto* const program = new BusProgram(QDBusConnection::sessionBus());
    return *program;
}

QDateTime now() {
    static auto* const runLoop = new QtRunLoop;
    return runLoop->now();
}

} // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> table = [] {
        std::vector<Command> all = remoteCommands({.program = program, .now = now});
        for (const Command& command : {checkCommand(), missedCommand()})
            all.push_back(command);
        return all;
    }();
    return table;
}

} // namespace dorvane

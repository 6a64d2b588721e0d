// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "platform/RemoteProgram.h"

#include <QDateTime>

#include <functional>

namespace dorvane {

// What the commands work with.
struct CommandServices {
    using Run = std::function<ExitStatus(const QCommandLineParser& parser)>;

    // Reached when a command first needs it, so that a fault in what was typed costs no look at the
    // bus.
    std::function<RemoteProgram&()> program;
    std::function<QDateTime()> now;
    std::function<QStringList()> soundNames = {}; // of the library
    // The two that work without the program, too.
    Run check = {};
    Run missed = {};
};

// Every command, in the order in which help lists them. What the services refer to must outlive
// them. How one that goes over the bus is added: its operation to platform/RemoteControl.h, its
// method to platform/RemoteMethods.h, what it does to control/AlarmControl, the command to one of
// the tables below; the build's target `pages` tells the pages of it.
[[nodiscard]] std::vector<Command> allCommands(const CommandServices& services);

// The commands of one file each.
[[nodiscard]] std::vector<Command> addCommands(const CommandServices& services);
[[nodiscard]] std::vector<Command> pauseCommands(const CommandServices& services);
[[nodiscard]] std::vector<Command> listCommands(const CommandServices& services);
[[nodiscard]] std::vector<Command> answerCommands(const CommandServices& services);

// What of a command is run, with the services that it runs with.
[[nodiscard]] inline CommandServices::Run
with(const CommandServices& services,
     ExitStatus (*run)(const CommandServices& services, const QCommandLineParser& parser)) {
    return [services, run](const QCommandLineParser& parser) { return run(services, parser); };
}

// Tells of the fault; the status to end with.
[[nodiscard]] ExitStatus tellFault(const RemoteProgram::Fault& fault);

// The running alarms, or the status to end with after the fault was told.
[[nodiscard]] std::variant<QVariantList, ExitStatus> runningAlarms(RemoteProgram& program);

// Shows the running alarm of an identity as the list does.
[[nodiscard]] ExitStatus showAlarm(const CommandServices& services, const QString& identity);

// Offers the titles of the alarms that the method lists; of several that have one title, and where
// one cannot be typed, the identities. Nothing where the program does not run.
[[nodiscard]] Offer titles(const CommandServices& services, const RemoteMethod& list);

} // namespace dorvane

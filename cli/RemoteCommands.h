// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "platform/RemoteProgram.h"

#include <QDateTime>

#include <functional>

namespace dorvane {

// What the commands work with. The program is reached when a command first needs it, so that a
// fault in what was typed costs no look at the bus.
struct CommandServices {
    std::function<RemoteProgram&()> program;
    std::function<QDateTime()> now;
};

// The commands that ask the running program for something, in the order in which help lists them.
// What the services refer to must outlive the commands.
[[nodiscard]] std::vector<Command> remoteCommands(const CommandServices& services);

// Tells of the fault; the status to end with.
[[nodiscard]] ExitStatus tellFault(const RemoteProgram::Fault& fault);

// The running alarms, or the status to end with after the fault was told.
[[nodiscard]] std::variant<QVariantList, ExitStatus> runningAlarms(RemoteProgram& program);

// The commands of one kind each.
[[nodiscard]] ExitStatus runTimer(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runAdd(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runList(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runStart(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runSnooze(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runClear(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runDelete(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runBreaks(const CommandServices& services, const QStringList& arguments);
[[nodiscard]] ExitStatus runStatus(const CommandServices& services, const QStringList& arguments);

// Shows the running alarm of an identity as the list does.
[[nodiscard]] ExitStatus showAlarm(const CommandServices& services, const QString& identity);

} // namespace dorvane

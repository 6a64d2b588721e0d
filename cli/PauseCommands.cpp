// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/Isolated.h"
#include "core/WrittenDate.h"
#include "platform/RemoteMethods.h"

#include <QCommandLineParser>

namespace dorvane {

namespace {

ExitStatus ask(const CommandServices& services, const RemoteMethod& method,
               const QVariantList& arguments = {}) {
    const auto answer = services.program().call(method, arguments);
    const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer);
    return fault ? tellFault(*fault) : ExitStatus::Done;
}

ExitStatus runPause(const CommandServices& services, const QCommandLineParser& parser) {
    const QString typed = parser.value(QStringLiteral("until"));
    if (!parser.isSet(QStringLiteral("until")))
        return ask(services, remote::pause, {qint64(0)});
    const auto date = dateRead(typed, QLocale::system(), services.now(), QTime(0, 0)).date;
    if (!date) {
        writeFault(
            QStringLiteral(
                "--until takes a date such as 2026-12-24, 24 Dec, tomorrow or fri, not \"%1\"")
                .arg(typed));
        return ExitStatus::Usage;
    }
    return ask(services, remote::pause, {date->startOfDay().toSecsSinceEpoch()});
}

ExitStatus runResume(const CommandServices& services, const QCommandLineParser& /*parser*/) {
    return ask(services, remote::resume);
}

ExitStatus runShow(const CommandServices& services, const QCommandLineParser& /*parser*/) {
    return ask(services, remote::showAlarms);
}

ExitStatus runUndo(const CommandServices& services, const QCommandLineParser& /*parser*/) {
    const auto answer = services.program().call(remote::undo);
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    writeLine(isolated(std::get<QVariantList>(answer).value(0).toString()) +
              QStringLiteral(" is back"));
    return ExitStatus::Done;
}

} // namespace

std::vector<Command> pauseCommands(const CommandServices& services) {
    return {
        {.name = "pause",
         .example = "--until fri",
         .help = "holds repeating alarms, until a date or until resumed",
         .description = "Holds the alarms of every day, of every week and of every so much time. "
                        "Timers, alarms on a date and those of single weekdays ring. A pause goes "
                        "on when Dorvane ends.",
         .options = {{"until",
                      "The first day on which they ring again: 2026-12-24, 24 Dec, tomorrow, fri.",
                      "DATE", oneOf("tomorrow mon tue wed thu fri sat sun")}},
         .run = with(services, runPause)},
        {.name = "resume",
         .example = "",
         .help = "ends a pause",
         .description = "Ends a pause.",
         .run = with(services, runResume)},
        {.name = "undo",
         .example = "",
         .help = "brings back what was deleted last",
         .description = "Brings back the alarm that was deleted last since Dorvane started.",
         .run = with(services, runUndo)},
        {.name = "show",
         .example = "",
         .help = "opens the window of all alarms",
         .description = "Opens the window of all alarms.",
         .run = with(services, runShow)},
    };
}

} // namespace dorvane

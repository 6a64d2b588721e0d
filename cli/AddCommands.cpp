// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmOptions.h"
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"
#include "platform/RemoteMethods.h"

#include <QCommandLineParser>

namespace dorvane {

namespace {

ExitStatus misused(const QString& fault) {
    writeFault(fault);
    return ExitStatus::Usage;
}

ExitStatus showMade(const CommandServices& services, const RemoteProgram::Answer& answer) {
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    return showAlarm(services, std::get<QVariantList>(answer).value(0).toString());
}

ExitStatus add(const CommandServices& services, QVariantMap alarm, const QString& title) {
    if (title.trimmed().isEmpty())
        return misused(QStringLiteral("a title is needed, such as Tea"));
    alarm.insert(key::title, title);
    return showMade(services, services.program().call(remote::addAlarm, {alarm}));
}

ExitStatus runTimer(const CommandServices& services, const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    const auto interval = intervalRead(words[0]);
    if (!interval)
        return misused(intervalFault(QStringLiteral("TIME"), words[0]));
    using namespace std::chrono;
    if (interval->length % minutes(1) != seconds(0)) {
        QVariantMap alarm;
        insertInterval(*interval, alarm);
        return add(services, alarm, words.value(1, words[0]));
    }
    return showMade(
        services, services.program().call(
                      remote::addTimer, {quint32(duration_cast<minutes>(interval->length).count()),
                                         words.value(1, QStringLiteral(""))}));
}

ExitStatus runAdd(const CommandServices& services, const QCommandLineParser& parser) {
    const auto alarm = readAlarmOptions(parser, QLocale::system(), services.now());
    if (const QString* const fault = std::get_if<QString>(&alarm))
        return misused(*fault);
    return add(services, std::get<QVariantMap>(alarm), parser.positionalArguments().constFirst());
}

ExitStatus runQuick(const CommandServices& services, const QCommandLineParser& /*parser*/) {
    const auto answer = services.program().call(remote::quick);
    const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer);
    return fault ? tellFault(*fault) : ExitStatus::Done;
}

ExitStatus runStart(const CommandServices& services, const QCommandLineParser& parser) {
    return showMade(
        services, services.program().call(remote::startStored, {parser.positionalArguments()[0]}));
}

} // namespace

std::vector<Command> addCommands(const CommandServices& services) {
    return {
        {.name = "timer",
         .example = "25 Tea",
         .help = "starts a timer",
         .description = "Starts a timer, and shows it as list does.",
         .words = {{"TIME", "How long: 25, 5m, 2h, 1h30 or 30s.", true,
                    oneOf("1 2 3 4 5 10 15 20 30 45")},
                   {"TITLE", "What for.", false}},
         .run = with(services, runTimer)},
        {.name = "add",
         .example = "Train --at 16:05 --date fri",
         .help = "sets an alarm",
         .description = "Sets an alarm, and shows it as list does.",
         .words = {{"TITLE", "What for."}},
         .options = alarmOptions(services),
         .run = with(services, runAdd)},
        {.name = "quick",
         .example = "",
         .help = "opens a field for a timer or an alarm in one line",
         .description = "Opens a field that reads 25 tea, 7:30, tomorrow 7 gym or mon-fri 7:15 "
                        "work, and says what it read. For a keyboard shortcut of the desktop.",
         .run = with(services, runQuick)},
        {.name = "start",
         .example = "Tea",
         .help = "starts a stored alarm",
         .description = "Starts a stored alarm, and shows it as list does.",
         .words = {{"TITLE", "Its title.", true, titles(services, remote::listStored)}},
         .run = with(services, runStart)},
    };
}

} // namespace dorvane

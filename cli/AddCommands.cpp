// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmOptions.h"
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"

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
    return showMade(services, services.program().call(QStringLiteral("AddAlarm"), {alarm},
                                                      RemoteProgram::Start::WhereNeeded));
}

} // namespace

ExitStatus runTimer(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Starts a timer, and shows it as list does."));
    parser.addPositionalArgument(QStringLiteral("TIME"),
                                 QStringLiteral("How long: 25, 5m, 2h, 1h30 or 30s."));
    parser.addPositionalArgument(QStringLiteral("TITLE"), QStringLiteral("What for."),
                                 QStringLiteral("[TITLE]"));
    if (const auto status = readArguments(parser, arguments, {1, 2}))
        return *status;
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
    return showMade(services, services.program().call(
                                  QStringLiteral("AddTimer"),
                                  {quint32(duration_cast<minutes>(interval->length).count()),
                                   words.value(1, QStringLiteral(""))},
                                  RemoteProgram::Start::WhereNeeded));
}

ExitStatus runAdd(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Sets an alarm, and shows it as list does."));
    const AlarmOptions options;
    parser.addOptions(options.all());
    parser.addPositionalArgument(QStringLiteral("TITLE"), QStringLiteral("What for."));
    if (const auto status = readArguments(parser, arguments, {1, 1}))
        return *status;
    const auto alarm = options.read(parser, QLocale::system(), services.now());
    if (const QString* const fault = std::get_if<QString>(&alarm))
        return misused(*fault);
    return add(services, std::get<QVariantMap>(alarm), parser.positionalArguments().constFirst());
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RemoteCommands.h"

#include "cli/AlarmWords.h"
#include "cli/Console.h"
#include "core/AlarmKeys.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

QStringList rowsOf(const QVariantList& alarms, bool isStored, const QDateTime& now) {
    std::vector<QStringList> rows;
    for (const QVariant& alarm : alarms)
        rows.push_back(isStored ? storedCells(alarm.toMap()) : runningCells(alarm.toMap(), now));
    return aligned(rows);
}

// What is due together is listed by title, or a restart would change its order.
bool isBefore(const QVariant& a, const QVariant& b) {
    const auto place = [](const QVariantMap& alarm) {
        return std::pair(alarm.value(key::due).toLongLong(), alarm.value(key::title).toString());
    };
    return place(a.toMap()) < place(b.toMap());
}

} // namespace

std::vector<Command> remoteCommands(const CommandServices& services) {
    const auto command = [&services](
                             const char* name, const char* help,
                             ExitStatus (*run)(const CommandServices&, const QStringList&)) {
        return Command{QString::fromLatin1(name), QString::fromLatin1(help),
                       [services, run](const QStringList& words) { return run(services, words); }};
    };
    return {
        command("timer", "starts a timer", runTimer),
        command("add", "sets an alarm", runAdd),
        command("list", "lists the running or the stored alarms", runList),
        command("start", "starts a stored alarm", runStart),
        command("snooze", "puts an alarm that rings off", runSnooze),
        command("clear", "answers an alarm that rings, or ends another", runClear),
        command("delete", "ends a running alarm for good, or deletes a stored one", runDelete),
        command("breaks", "starts, stops or skips breaks", runBreaks),
        command("status", "tells what is next and what rings, once or at each change", runStatus)};
}

ExitStatus tellFault(const RemoteProgram::Fault& fault) {
    writeFault(fault.reason);
    return fault.kind == RemoteProgram::Fault::Kind::Refused ? ExitStatus::Refused
                                                             : ExitStatus::Unreachable;
}

std::variant<QVariantList, ExitStatus> runningAlarms(RemoteProgram& program) {
    const auto answer = program.call(QStringLiteral("ListRunning"));
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    return std::get<QVariantList>(answer).value(0).toList();
}

ExitStatus showAlarm(const CommandServices& services, const QString& identity) {
    const auto alarms = runningAlarms(services.program());
    if (const auto* const status = std::get_if<ExitStatus>(&alarms))
        return *status;
    for (const QVariant& alarm : std::get<QVariantList>(alarms))
        if (alarm.toMap().value(key::identity) == identity)
            writeLine(aligned({runningCells(alarm.toMap(), services.now())}).first());
    return ExitStatus::Done;
}

ExitStatus runList(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Lists the running alarms: identity, when, how far off, title."));
    const QCommandLineOption stored(QStringLiteral("stored"),
                                    QStringLiteral("The stored alarms instead."));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("As a JSON array."));
    parser.addOptions({stored, json});
    if (const auto status = readArguments(parser, arguments))
        return *status;
    const bool isStored = parser.isSet(stored);
    const auto answer = services.program().call(isStored ? QStringLiteral("ListStored")
                                                         : QStringLiteral("ListRunning"));
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    QVariantList alarms = std::get<QVariantList>(answer).value(0).toList();
    if (!isStored) // soonest first; what is stored keeps its order
        std::stable_sort(alarms.begin(), alarms.end(), isBefore);
    if (parser.isSet(json)) {
        const QJsonDocument document(QJsonArray::fromVariantList(alarms));
        writeLine(QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
        return ExitStatus::Done;
    }
    for (const QString& line : rowsOf(alarms, isStored, services.now()))
        writeLine(line);
    if (alarms.isEmpty())
        writeLine(isStored ? QStringLiteral("No alarms are stored.")
                           : QStringLiteral("No alarms are running."));
    if (isStored)
        return ExitStatus::Done;
    const auto properties = services.program().properties();
    if (const auto* const values = std::get_if<QVariantMap>(&properties))
        if (const QString next = nextBreak(*values, services.now()); !next.isEmpty())
            writeLine(next);
    return ExitStatus::Done;
}

ExitStatus runBreaks(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The break reminder."));
    parser.addPositionalArgument(QStringLiteral("start|stop|skip|status"),
                                 QStringLiteral("What to do; skip begins the working time anew."));
    if (const auto status = readArguments(parser, arguments, {1, 1}))
        return *status;
    const QString verb = parser.positionalArguments().constFirst();
    RemoteProgram& program = services.program();
    if (verb == QStringLiteral("status")) {
        const auto properties = program.properties();
        if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&properties))
            return tellFault(*fault);
        const auto& values = std::get<QVariantMap>(properties);
        const bool isOn = values.value(QStringLiteral("BreaksRunning")).toBool();
        const QString next = nextBreak(values, services.now());
        writeLine(!isOn ? QStringLiteral("Breaks are off.")
                        : QStringLiteral("Breaks are on%1.")
                              .arg(next.isEmpty() ? next : QStringLiteral(": ") + next));
        return ExitStatus::Done;
    }
    const QMap<QString, QString> methods{{QStringLiteral("start"), QStringLiteral("StartBreaks")},
                                         {QStringLiteral("stop"), QStringLiteral("StopBreaks")},
                                         {QStringLiteral("skip"), QStringLiteral("SkipBreak")}};
    if (!methods.contains(verb)) {
        writeFault(QStringLiteral("Breaks cannot %1. See: dorvane breaks --help").arg(verb));
        return ExitStatus::Usage;
    }
    const auto start = verb == QStringLiteral("start") ? RemoteProgram::Start::WhereNeeded
                                                       : RemoteProgram::Start::Never;
    const auto answer = program.call(methods.value(verb), {}, start);
    const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer);
    return fault ? tellFault(*fault) : ExitStatus::Done;
}

ExitStatus runStatus(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Tells in one line what rings, or else what is next."));
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("As a JSON object: text, tooltip, class, ..."));
    const QCommandLineOption follow(QStringLiteral("follow"),
                                    QStringLiteral("Goes on with a line at each change."));
    parser.addOptions({json, follow});
    if (const auto status = readArguments(parser, arguments))
        return *status;

    RemoteProgram& program = services.program();
    bool isReached = false;
    const auto look = [&] {
        const auto properties = program.properties();
        // As many as a line or a tool tip tells of: who follows asks again at each change.
        const auto answer = program.call(QStringLiteral("ListNext"), {20U});
        for (const auto* const fault : {std::get_if<RemoteProgram::Fault>(&properties),
                                        std::get_if<RemoteProgram::Fault>(&answer)})
            if (fault) {
                isReached = false;
                return stoppedReport(fault->reason);
            }
        isReached = true;
        return statusReport(std::get<QVariantList>(answer).value(0).toList(),
                            std::get<QVariantMap>(properties), services.now());
    };
    const bool isJson = parser.isSet(json);
    const auto lineOf = [isJson](const StatusReport& report) {
        const auto object = QJsonDocument::fromVariant(report.json);
        return isJson ? QString::fromUtf8(object.toJson(QJsonDocument::Compact)) : report.line;
    };
    // The seconds left are another number at each look.
    const auto changingPartOf = [lineOf](StatusReport report) {
        report.json.remove(QStringLiteral("seconds"));
        return lineOf(report);
    };
    if (!parser.isSet(follow)) {
        writeLine(lineOf(look()));
        return isReached ? ExitStatus::Done : ExitStatus::Unreachable;
    }
    QString last;
    program.follow([&] {
        const StatusReport report = look();
        const QString before = std::exchange(last, changingPartOf(report));
        return before == last || writeLine(lineOf(report));
    });
    return isReached ? ExitStatus::Done : ExitStatus::Unreachable;
}

} // namespace dorvane

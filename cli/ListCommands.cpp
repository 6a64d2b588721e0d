// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmWords.h"
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"
#include "platform/RemoteMethods.h"

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
        rows.push_back(isStored ? storedCells(alarm.toMap(), now)
                                : runningCells(alarm.toMap(), now));
    return aligned(rows);
}

// What is due together is listed by title, or a restart would change its order.
bool isBefore(const QVariant& a, const QVariant& b) {
    const auto place = [](const QVariantMap& alarm) {
        return std::pair(alarm.value(key::due).toLongLong(), alarm.value(key::title).toString());
    };
    return place(a.toMap()) < place(b.toMap());
}

ExitStatus runList(const CommandServices& services, const QCommandLineParser& parser) {
    const bool isStored = parser.isSet(QStringLiteral("stored"));
    const auto answer =
        services.program().call(isStored ? remote::listStored : remote::listRunning);
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    QVariantList alarms = std::get<QVariantList>(answer).value(0).toList();
    if (!isStored) // soonest first; what is stored keeps its order
        std::stable_sort(alarms.begin(), alarms.end(), isBefore);
    if (parser.isSet(QStringLiteral("json"))) {
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

ExitStatus runBreaks(const CommandServices& services, const QCommandLineParser& parser) {
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
    const QMap<QString, const RemoteMethod*> methods{
        {QStringLiteral("start"), &remote::startBreaks},
        {QStringLiteral("stop"), &remote::stopBreaks},
        {QStringLiteral("skip"), &remote::skipBreak}};
    if (!methods.contains(verb)) {
        writeFault(
            QStringLiteral("breaks takes start, stop, skip or status, not \"%1\"").arg(verb));
        return ExitStatus::Usage;
    }
    const auto answer = program.call(*methods.value(verb));
    const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer);
    return fault ? tellFault(*fault) : ExitStatus::Done;
}

ExitStatus runStatus(const CommandServices& services, const QCommandLineParser& parser) {
    RemoteProgram& program = services.program();
    bool isReached = false;
    const auto look = [&] {
        const auto properties = program.properties();
        // As many as a line or a tool tip tells of: who follows asks again at each change.
        const auto answer = program.call(remote::listNext, {20U});
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
    const bool isJson = parser.isSet(QStringLiteral("json"));
    const auto lineOf = [isJson](const StatusReport& report) {
        const auto object = QJsonDocument::fromVariant(report.json);
        return isJson ? QString::fromUtf8(object.toJson(QJsonDocument::Compact)) : report.line;
    };
    // The seconds left are another number at each look.
    const auto changingPartOf = [lineOf](StatusReport report) {
        report.json.remove(QStringLiteral("seconds"));
        return lineOf(report);
    };
    if (!parser.isSet(QStringLiteral("follow"))) {
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

} // namespace

std::vector<Command> listCommands(const CommandServices& services) {
    return {
        {.name = "list",
         .example = "",
         .help = "lists the running alarms, or with --stored the others",
         .description = "Lists the running alarms, soonest first: identity, when, how far off, "
                        "title, how it repeats. An identity stays the same while the alarm runs, "
                        "also when it is edited.",
         .options = {{"stored", "The stored alarms instead."}, {"json", "As a JSON array."}},
         .run = with(services, runList)},
        {.name = "status",
         .example = "--follow",
         .help = "tells what is next and what rings, once or at each change",
         .description = "Tells in one line what rings, or else what is next.",
         .options = {{"json", "As a JSON object: text, tooltip, class, ..."},
                     {"follow", "Goes on with a line at each change."}},
         .run = with(services, runStatus)},
        {.name = "breaks",
         .example = "start",
         .help = "starts, stops or skips breaks, or tells of them",
         .description = "The break reminder.",
         .words = {{"start|stop|skip|status",
                    "What to do; to skip is to begin the working time anew.", true,
                    oneOf("start stop skip status")}},
         .run = with(services, runBreaks)},
        {.name = "check",
         .example = "",
         .help = "tells whether alarms will ring; a test sound plays",
         .description =
             "Tells whether alarms will ring: one line for each thing that they lean on, with what "
             "to do below it. A short test sound is played and listened for.",
         .options = {{"json", "Prints JSON."}, {"quiet", "Plays no test sound."}},
         .run = services.check},
        {.name = "missed",
         .example = "",
         .help = "prints what was missed in the last thirty days",
         .description = "Prints the alarms of the last thirty days that were missed: that rang and "
                        "were not answered, that passed while Dorvane was not running, or that "
                        "were running when it ended and are not any more.",
         .run = services.missed},
    };
}

} // namespace dorvane

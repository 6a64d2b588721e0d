// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"
#include "core/Isolated.h"
#include "core/WrittenInterval.h"

#include <QCommandLineParser>

namespace dorvane {

namespace {

using Fault = RemoteProgram::Fault;

// What an alarm was asked for by.
struct Which {
    QString name; // identity or title
    bool isRinging = false;
};

std::variant<Which, ExitStatus> readWhich(QCommandLineParser& parser,
                                          const QStringList& arguments) {
    parser.addPositionalArgument(QStringLiteral("WHICH"),
                                 QStringLiteral("Its identity or its title."),
                                 QStringLiteral("WHICH"));
    const QCommandLineOption ringing(QStringLiteral("ringing"),
                                     QStringLiteral("Every alarm that rings, in place of WHICH."));
    parser.addOption(ringing);
    if (const auto status = readArguments(parser, arguments, {0, 1}))
        return *status;
    const QString name = parser.positionalArguments().value(0);
    if (name.isEmpty() != parser.isSet(ringing)) {
        writeFault(QStringLiteral("either WHICH or --ringing is needed"));
        return ExitStatus::Usage;
    }
    return Which{name, parser.isSet(ringing)};
}

QVariantList matching(const QVariantList& alarms, const Which& which) {
    QVariantList found;
    for (const QVariant& entry : alarms) {
        const QVariantMap alarm = entry.toMap();
        if (!which.isRinging && alarm.value(key::identity) == which.name)
            return {entry};
        if (which.isRinging ? alarm.value(key::ringing).toBool()
                            : alarm.value(key::title) == which.name)
            found << entry;
    }
    return found;
}

std::variant<QVariantList, ExitStatus> find(RemoteProgram& program, const Which& which) {
    auto alarms = runningAlarms(program);
    if (const auto* const status = std::get_if<ExitStatus>(&alarms))
        return *status;
    QVariantList found = matching(std::get<QVariantList>(alarms), which);
    if (which.isRinging || found.size() <= 1)
        return found;
    QStringList identities;
    for (const QVariant& alarm : found)
        identities << alarm.toMap().value(key::identity).toString();
    return tellFault(
        {Fault::Kind::Refused, QStringLiteral("%1 alarms are called \"%2\"; say which: %3")
                                   .arg(QString::number(found.size()), isolated(which.name),
                                        identities.join(QStringLiteral(", ")))});
}

ExitStatus tellNone(const Which& which) {
    return tellFault({Fault::Kind::Refused,
                      which.isRinging
                          ? QStringLiteral("nothing rings")
                          : QStringLiteral("no alarm runs as \"%1\"").arg(isolated(which.name))});
}

// What is asked of the program for an alarm, and what is said of it then.
struct Deed {
    QString method;
    QString done;
    QVariantList arguments = {}; // beside the alarm
};

// Does it to each of the alarms; the first that is refused ends it.
ExitStatus onEach(const CommandServices& services, const QVariantList& alarms, const Deed& deed) {
    for (const QVariant& entry : alarms) {
        const QVariantMap alarm = entry.toMap();
        const auto answer = services.program().call(
            deed.method, QVariantList{alarm.value(key::identity)} + deed.arguments);
        if (const auto* const fault = std::get_if<Fault>(&answer))
            return tellFault(*fault);
        writeLine(isolated(alarm.value(key::title).toString()) + u' ' + deed.done);
    }
    return ExitStatus::Done;
}

ExitStatus answer(const CommandServices& services, const std::variant<Which, ExitStatus>& which,
                  const Deed& deed) {
    if (const auto* const status = std::get_if<ExitStatus>(&which))
        return *status;
    const auto found = find(services.program(), std::get<Which>(which));
    if (const auto* const status = std::get_if<ExitStatus>(&found))
        return *status;
    const QVariantList& alarms = std::get<QVariantList>(found);
    return alarms.isEmpty() ? tellNone(std::get<Which>(which)) : onEach(services, alarms, deed);
}

} // namespace

ExitStatus runSnooze(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Puts an alarm that rings off."));
    const QCommandLineOption length(QStringLiteral("for"),
                                    QStringLiteral("For so long this once: 15, 1h or 1h30."),
                                    QStringLiteral("TIME"));
    parser.addOption(length);
    const auto which = readWhich(parser, arguments);
    Deed deed{QStringLiteral("Snooze"), QStringLiteral("is snoozed")};
    if (parser.isSet(length)) {
        const auto interval = intervalRead(parser.value(length));
        if (!interval || interval->length % std::chrono::minutes(1) != std::chrono::seconds(0)) {
            writeFault(
                QStringLiteral("--for takes whole minutes such as 15, 1h or 1h30, not \"%1\"")
                    .arg(parser.value(length)));
            return ExitStatus::Usage;
        }
        deed.method = QStringLiteral("SnoozeFor");
        deed.arguments << quint32(interval->length / std::chrono::minutes(1));
    }
    return answer(services, which, deed);
}

ExitStatus runClear(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Answers an alarm that rings, so that it comes again only if it repeats; "
                       "ends one that does not ring."));
    return answer(services, readWhich(parser, arguments),
                  {QStringLiteral("Clear"), QStringLiteral("is cleared")});
}

ExitStatus runStart(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Starts a stored alarm, and shows it as list does."));
    parser.addPositionalArgument(QStringLiteral("TITLE"), QStringLiteral("Its title."));
    if (const auto status = readArguments(parser, arguments, {1, 1}))
        return *status;
    const auto made =
        services.program().call(QStringLiteral("StartStored"), {parser.positionalArguments()[0]},
                                RemoteProgram::Start::WhereNeeded);
    if (const auto* const fault = std::get_if<Fault>(&made))
        return tellFault(*fault);
    return showAlarm(services, std::get<QVariantList>(made).value(0).toString());
}

// Running alarms go first: a title is often that of both.
ExitStatus runDelete(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Ends a running alarm for good; where none runs, deletes the stored one of the title."));
    const QCommandLineOption stored(QStringLiteral("stored"),
                                    QStringLiteral("The stored alarm, whatever runs."));
    parser.addOption(stored);
    const auto read = readWhich(parser, arguments);
    if (const auto* const status = std::get_if<ExitStatus>(&read))
        return *status;
    const Which& which = std::get<Which>(read);
    if (!parser.isSet(stored)) {
        const auto found = find(services.program(), which);
        if (const auto* const status = std::get_if<ExitStatus>(&found))
            return *status;
        const QVariantList& alarms = std::get<QVariantList>(found);
        if (!alarms.isEmpty())
            return onEach(services, alarms,
                          {QStringLiteral("Delete"), QStringLiteral("is deleted")});
    }
    if (which.isRinging)
        return tellNone(which);
    const auto removed = services.program().call(QStringLiteral("DeleteStored"), {which.name});
    if (const auto* const fault = std::get_if<Fault>(&removed))
        return tellFault(*fault);
    writeLine(isolated(which.name) + QStringLiteral(" is no longer stored"));
    return ExitStatus::Done;
}

} // namespace dorvane

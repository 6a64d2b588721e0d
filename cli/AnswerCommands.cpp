// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmOptions.h"
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"
#include "core/Isolated.h"
#include "core/WrittenInterval.h"
#include "platform/RemoteMethods.h"

#include <QCommandLineParser>

namespace dorvane {

namespace {

using Fault = RemoteProgram::Fault;

// What an alarm was asked for by.
struct Which {
    QString name; // identity or title
    bool isRinging = false;
};

const CommandOption ringingOption{"ringing", "Every alarm that rings, in place of WHICH."};

std::variant<Which, ExitStatus> readWhich(const QCommandLineParser& parser) {
    const QString name = parser.positionalArguments().value(0);
    const bool isRinging = parser.optionNames().contains(QLatin1String(ringingOption.name));
    if (name.isEmpty() != isRinging) {
        writeFault(isRinging ? QStringLiteral("it is either WHICH or --ringing")
                             : QStringLiteral("either WHICH or --ringing is needed"));
        return ExitStatus::Usage;
    }
    return Which{name, isRinging};
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
    const RemoteMethod& method;
    const char* done;
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
        writeLine(isolated(alarm.value(key::title).toString()) + u' ' +
                  QString::fromLatin1(deed.done));
    }
    return ExitStatus::Done;
}

ExitStatus answer(const CommandServices& services, const QCommandLineParser& parser,
                  const Deed& deed) {
    const auto which = readWhich(parser);
    if (const auto* const status = std::get_if<ExitStatus>(&which))
        return *status;
    const auto found = find(services.program(), std::get<Which>(which));
    if (const auto* const status = std::get_if<ExitStatus>(&found))
        return *status;
    const QVariantList& alarms = std::get<QVariantList>(found);
    return alarms.isEmpty() ? tellNone(std::get<Which>(which)) : onEach(services, alarms, deed);
}

ExitStatus runSnooze(const CommandServices& services, const QCommandLineParser& parser) {
    const QString length = parser.value(QStringLiteral("for"));
    constexpr const char* done = "is snoozed";
    if (!parser.isSet(QStringLiteral("for")))
        return answer(services, parser, {remote::snooze, done});
    const auto interval = intervalRead(length);
    if (!interval || interval->length % std::chrono::minutes(1) != std::chrono::seconds(0)) {
        writeFault(QStringLiteral("--for takes whole minutes such as 15, 1h or 1h30, not \"%1\"")
                       .arg(length));
        return ExitStatus::Usage;
    }
    return answer(services, parser,
                  {remote::snoozeFor, done, {quint32(interval->length / std::chrono::minutes(1))}});
}

ExitStatus runClear(const CommandServices& services, const QCommandLineParser& parser) {
    return answer(services, parser, {remote::clear, "is cleared"});
}

ExitStatus runSkip(const CommandServices& services, const QCommandLineParser& parser) {
    return answer(services, parser, {remote::skip, "is skipped once"});
}

// Running alarms go first: a title is often that of both.
ExitStatus runDelete(const CommandServices& services, const QCommandLineParser& parser) {
    const auto read = readWhich(parser);
    if (const auto* const status = std::get_if<ExitStatus>(&read))
        return *status;
    const Which& which = std::get<Which>(read);
    if (!parser.isSet(QStringLiteral("stored"))) {
        const auto found = find(services.program(), which);
        if (const auto* const status = std::get_if<ExitStatus>(&found))
            return *status;
        const QVariantList& alarms = std::get<QVariantList>(found);
        if (!alarms.isEmpty())
            return onEach(services, alarms, {remote::remove, "is deleted"});
    }
    if (which.isRinging)
        return tellNone(which);
    const auto removed = services.program().call(remote::removeStored, {which.name});
    if (const auto* const fault = std::get_if<Fault>(&removed))
        return tellFault(*fault);
    writeLine(isolated(which.name) + QStringLiteral(" is no longer stored"));
    return ExitStatus::Done;
}

// The one alarm that is to be edited; empty where there is none.
std::variant<QVariantMap, ExitStatus> findOne(RemoteProgram& program, const Which& which,
                                              bool isStored) {
    if (!isStored) {
        const auto found = find(program, which);
        if (const auto* const status = std::get_if<ExitStatus>(&found))
            return *status;
        return std::get<QVariantList>(found).value(0).toMap();
    }
    const auto answer = program.call(remote::listStored);
    if (const auto* const fault = std::get_if<Fault>(&answer))
        return tellFault(*fault);
    for (const QVariant& alarm : std::get<QVariantList>(answer).value(0).toList())
        if (alarm.toMap().value(key::title) == which.name)
            return alarm.toMap();
    return QVariantMap();
}

ExitStatus runEdit(const CommandServices& services, const QCommandLineParser& parser) {
    const Which which{parser.positionalArguments().constFirst()};
    RemoteProgram& program = services.program();
    bool isStored = parser.isSet(QStringLiteral("stored"));
    auto found = findOne(program, which, isStored);
    if (const auto* const one = std::get_if<QVariantMap>(&found);
        one && one->isEmpty() && !isStored)
        found = findOne(program, which, isStored = true);
    if (const auto* const status = std::get_if<ExitStatus>(&found))
        return *status;
    const auto& alarm = std::get<QVariantMap>(found);
    if (alarm.isEmpty())
        return tellFault(
            {Fault::Kind::Refused,
             QStringLiteral("no alarm runs or is stored as \"%1\"").arg(isolated(which.name))});
    const auto read = readAlarmOptions(parser, QLocale::system(), services.now(), alarm);
    if (const QString* const fault = std::get_if<QString>(&read)) {
        writeFault(*fault);
        return ExitStatus::Usage;
    }
    QVariantMap changes = std::get<QVariantMap>(read);
    if (parser.isSet(key::title))
        changes.insert(key::title, parser.value(key::title));
    if (changes.isEmpty()) {
        writeFault(QStringLiteral("nothing to change; for example: dorvane edit Tea --at 7:45"));
        return ExitStatus::Usage;
    }
    const auto answer =
        isStored ? program.call(remote::editStored, {which.name, changes})
                 : program.call(remote::editAlarm, {alarm.value(key::identity), changes});
    if (const auto* const fault = std::get_if<Fault>(&answer))
        return tellFault(*fault);
    const QString edited = std::get<QVariantList>(answer).value(0).toString();
    if (!isStored)
        return showAlarm(services, edited);
    writeLine(isolated(edited) + QStringLiteral(" is changed in the library"));
    return ExitStatus::Done;
}

std::vector<CommandOption> editOptions(const CommandServices& services) {
    std::vector<CommandOption> options = alarmOptions(services);
    options.insert(options.begin(), {"title", "Another title.", "TITLE"});
    options.push_back({"stored", "The stored alarm, whatever runs."});
    return options;
}

} // namespace

std::vector<Command> answerCommands(const CommandServices& services) {
    const Offer running = titles(services, remote::listRunning);
    const CommandWord which{"WHICH", "Its identity or its title.", false, running};
    const Offer any = [running, stored = titles(services, remote::listStored)](
                          const QString& typed) { return running(typed) + stored(typed); };
    return {
        {.name = "edit",
         .example = "Tea --at 7:45",
         .help = "changes a running or a stored alarm",
         .description = "Changes a running alarm, and shows it as list does; where none runs, the "
                        "stored one of the title. What no option tells stays as it is. With --in "
                        "it counts from now.",
         .words = {{"WHICH", "Its identity or its title.", true, any}},
         .options = editOptions(services),
         .run = with(services, runEdit)},
        {.name = "snooze",
         .example = "Tea",
         .help = "puts off an alarm that rings",
         .description =
             "Puts off an alarm that rings, for its own minutes or for others this once.",
         .words = {which},
         .options = {{"for", "For so long, a day at most: 15, 1h or 1h30.", "TIME",
                      oneOf("1 5 10 15 30 60")},
                     ringingOption},
         .run = with(services, runSnooze)},
        {.name = "clear",
         .example = "Tea",
         .help = "answers an alarm that rings, or ends another",
         .description = "Answers an alarm that rings, so that it comes again only if it repeats; "
                        "ends one that does not ring.",
         .words = {which},
         .options = {ringingOption},
         .run = with(services, runClear)},
        {.name = "skip",
         .example = "Work",
         .help = "lets the next time of a repeating alarm go by",
         .description = "Lets the next time of a repeating alarm go by in silence, as if it had "
                        "rung and been cleared.",
         .words = {{which.name, which.help, true, running}},
         .run = with(services, runSkip)},
        {.name = "delete",
         .example = "Tea",
         .help = "ends a running alarm for good, or deletes a stored one",
         .description = "Ends a running alarm for good; where none runs, deletes the stored one of "
                        "the title.",
         .words = {{which.name, which.help, which.isNeeded, any}},
         .options = {ringingOption, {"stored", "The stored alarm, whatever runs."}},
         .run = with(services, runDelete)},
    };
}

} // namespace dorvane

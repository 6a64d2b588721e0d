// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RemoteCommands.h"

#include "cli/AlarmOptions.h"
#include "cli/AlarmWords.h"
#include "cli/Console.h"
#include "core/AlarmKeys.h"
#include "platform/RemoteMethods.h"

#include <QMultiMap>

namespace dorvane {

std::vector<Command> allCommands(const CommandServices& services) {
    std::vector<Command> all;
    for (auto&& some : {addCommands(services), answerCommands(services), pauseCommands(services),
                        listCommands(services)})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

// What the program could not read is as wrong as what the terminal cannot.
ExitStatus tellFault(const RemoteProgram::Fault& fault) {
    static const QStringList misreadings{
        QStringLiteral("UnknownKey"),   QStringLiteral("WrongType"), QStringLiteral("MissingKey"),
        QStringLiteral("InvalidValue"), QStringLiteral("TooLong"),   QStringLiteral("Conflict")};
    writeFault(inOptions(fault.reason));
    if (fault.kind == RemoteProgram::Fault::Kind::Unreachable)
        return ExitStatus::Unreachable;
    return misreadings.contains(fault.name) ? ExitStatus::Usage : ExitStatus::Refused;
}

std::variant<QVariantList, ExitStatus> runningAlarms(RemoteProgram& program) {
    const auto answer = program.call(remote::listRunning);
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

Offer titles(const CommandServices& services, const RemoteMethod& list) {
    return [services, &list](const QString&) {
        const auto answer = services.program().call(list);
        QMultiMap<QString, QString> identities;
        if (const auto* const values = std::get_if<QVariantList>(&answer))
            for (const QVariant& alarm : values->value(0).toList())
                identities.insert(alarm.toMap().value(key::title).toString(),
                                  alarm.toMap().value(key::identity).toString());
        QStringList offered;
        for (const QString& title : identities.uniqueKeys())
            if (identities.count(title) == 1 && isPrinted(title))
                offered << title;
            else
                offered << identities.values(title);
        offered.removeAll(QString()); // what is stored has none
        return offered;
    };
}

} // namespace dorvane

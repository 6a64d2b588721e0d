// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include "cli/Console.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace dorvane {

std::optional<int> runCommand(const std::vector<Command>& table, const QStringList& arguments) {
    const auto named = std::find_if(table.begin(), table.end(), [&](const Command& command) {
        return !arguments.isEmpty() && command.name == arguments.first();
    });
    if (named == table.end())
        return std::nullopt;
    // What the line with the usage begins with.
    QByteArray name = "dorvane " + named->name.toLocal8Bit();
    int count = 1;
    std::array<char*, 2> words{name.data(), nullptr};
    const QCoreApplication application(count, words.data());
    return int(named->run(arguments.sliced(1)));
}

std::optional<ExitStatus> readArguments(QCommandLineParser& parser, const QStringList& arguments,
                                        WordCount words) {
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this text and ends."));
    parser.addOption(help);
    const bool isRead = parser.parse(QCoreApplication::arguments() + arguments);
    if (isRead && parser.isSet(help)) {
        writeText(parser.helpText().trimmed());
        return ExitStatus::Done;
    }
    const qsizetype given = parser.positionalArguments().size();
    QString fault = isRead ? QString() : parser.errorText();
    if (isRead && given < words.least)
        fault = QStringLiteral("Something is missing.");
    if (isRead && given > words.most)
        fault = QStringLiteral("Too much: %1.").arg(parser.positionalArguments().at(words.most));
    if (fault.isEmpty())
        return std::nullopt;
    writeFault(fault +
               QStringLiteral(" See: %1 --help").arg(QCoreApplication::arguments().constFirst()));
    return ExitStatus::Usage;
}

} // namespace dorvane

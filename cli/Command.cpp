// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include "cli/Console.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>

namespace dorvane {

namespace {

const Command* named(const std::vector<Command>& table, const QString& name) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const Command& command) {
        return name == QLatin1String(command.name);
    });
    return found == table.end() ? nullptr : &*found;
}

void declare(const Command& command, QCommandLineParser& parser) {
    parser.setApplicationDescription(QString::fromLatin1(command.description));
    for (const CommandOption& option : command.options)
        parser.addOption({QString::fromLatin1(option.name), QString::fromLatin1(option.help),
                          QString::fromLatin1(option.value)});
    for (const CommandWord& word : command.words) {
        const QString name = QString::fromLatin1(word.name);
        parser.addPositionalArgument(name, QString::fromLatin1(word.help),
                                     word.isNeeded ? name : u'[' + name + u']');
    }
}

QString faultIn(const Command& command, const QStringList& words) {
    for (qsizetype i = words.size(); i < qsizetype(command.words.size()); ++i)
        if (command.words[std::size_t(i)].isNeeded)
            return QString::fromLatin1(command.words[std::size_t(i)].name) +
                   QStringLiteral(" is missing");
    if (words.size() > qsizetype(command.words.size()))
        return QStringLiteral("\"%1\" is too much").arg(words.at(qsizetype(command.words.size())));
    return {};
}

// As our own messages are written.
QString plain(QString fault) {
    if (fault.endsWith(u'.'))
        fault.chop(1);
    return fault.left(1).toLower() + fault.mid(1);
}

QString line(const QString& word, const char* help) {
    return *help ? word + u'\t' + QString::fromUtf8(help) : word;
}

QString dashed(const CommandOption& option) {
    return QStringLiteral("--") + QLatin1String(option.name);
}

} // namespace

Offer oneOf(const char* wordsWithBlanksBetween) {
    return [words = QString::fromLatin1(wordsWithBlanksBetween).split(u' ')](const QString&) {
        return words;
    };
}

ExitStatus runCommand(const Command& command, const QStringList& arguments) {
    QCommandLineParser parser;
    declare(command, parser);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this text and ends."));
    parser.addOption(help);
    const bool isRead = parser.parse(QCoreApplication::arguments() + arguments);
    if (isRead && parser.isSet(help)) {
        writeText(parser.helpText().trimmed());
        return ExitStatus::Done;
    }
    const QString fault =
        isRead ? faultIn(command, parser.positionalArguments()) : plain(parser.errorText());
    if (fault.isEmpty())
        return command.run(parser);
    const QString name = QLatin1String(command.name);
    writeFault(
        QStringLiteral("%1; for example: %2. See: dorvane %3 --help")
            .arg(
                fault,
                QStringLiteral("dorvane %1 %2").arg(name, QLatin1String(command.example)).trimmed(),
                name));
    return ExitStatus::Usage;
}

std::optional<int> runCommand(const std::vector<Command>& table, const QStringList& arguments) {
    const bool isToComplete = arguments.value(0) == QStringLiteral("--complete");
    const Command* const command = named(table, arguments.value(0));
    if (!command && !isToComplete)
        return std::nullopt;
    // What the line with the usage begins with.
    QByteArray name = "dorvane " + arguments.first().toLocal8Bit();
    int count = 1;
    std::array<char*, 2> words{name.data(), nullptr};
    const QCoreApplication application(count, words.data());
    if (command)
        return int(runCommand(*command, arguments.sliced(1)));
    for (const QString& offered : completions(table, arguments.sliced(1)))
        if (isPrinted(offered.section(u'\t', 0, 0)))
            std::puts(offered.toLocal8Bit().constData());
    return int(ExitStatus::Done);
}

QStringList completions(const std::vector<Command>& table, const QStringList& words) {
    QStringList lines;
    if (words.size() <= 1) {
        for (const Command& command : table)
            lines << line(QString::fromLatin1(command.name), command.help);
        return lines << QStringLiteral("--help") << QStringLiteral("--version");
    }
    const Command* const command = named(table, words.first());
    if (!command)
        return {};
    const QString& typed = words.constLast();
    std::size_t position = 0; // among the words that are no options
    for (qsizetype i = 1; i < words.size() - 1; ++i) {
        const auto option =
            std::find_if(command->options.begin(), command->options.end(),
                         [&](const CommandOption& each) { return dashed(each) == words[i]; });
        const bool takesValue = option != command->options.end() && *option->value;
        if (takesValue && i + 1 == words.size() - 1)
            return option->offer ? option->offer(typed) : QStringList();
        if (takesValue)
            ++i;
        else if (option == command->options.end())
            ++position;
    }
    if (position < command->words.size() && command->words[position].offer)
        lines << command->words[position].offer(typed);
    for (const CommandOption& option : command->options)
        if (!words.contains(dashed(option)))
            lines << line(dashed(option), option.help);
    return lines << QStringLiteral("--help");
}

} // namespace dorvane

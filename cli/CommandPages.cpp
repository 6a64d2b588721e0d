// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandPages.h"

#include "platform/RemoteMethods.h"

#include <QRegularExpression>

namespace dorvane {

namespace {

// A text as mdoc has it: each sentence on a line of its own.
QString prose(const char* text) {
    QString lines = QString::fromUtf8(text);
    lines.replace(u'\\', QStringLiteral("\\e"));
    lines.replace(QRegularExpression(QStringLiteral(R"(([^.][.!?]) )")), QStringLiteral("\\1\n"));
    lines.replace(
        QRegularExpression(QStringLiteral("^([.'])"), QRegularExpression::MultilineOption),
        QStringLiteral("\\\\&\\1"));
    return lines + u'\n';
}

QString argument(const char* name) {
    QString words = QString::fromUtf8(name).toLower();
    return QStringLiteral("Ar ") + words.replace(u'|', QStringLiteral(" | "));
}

QString flag(const CommandOption& option) {
    const QString name = QStringLiteral("Fl -") + QLatin1String(option.name);
    return *option.value ? name + u' ' + argument(option.value) : name;
}

QString head(const Command& command) {
    QString line = QStringLiteral("Cm ") + QLatin1String(command.name);
    for (const CommandWord& word : command.words)
        line += word.isNeeded ? u' ' + argument(word.name)
                              : QStringLiteral(" Op ") + argument(word.name);
    return line;
}

QString listed(const std::vector<RemoteArgument>& arguments) {
    QStringList texts;
    for (const RemoteArgument& argument : arguments)
        texts << QStringLiteral("`%1` %2").arg(QString::fromLatin1(argument.type),
                                               QString::fromLatin1(argument.name));
    return texts.join(QStringLiteral(", "));
}

} // namespace

QString manSynopsis(const std::vector<Command>& table) {
    QString text;
    for (const Command& command : table) {
        text += QStringLiteral(".Nm\n.") + head(command) + u'\n';
        for (const CommandOption& option : command.options)
            text += QStringLiteral(".Op ") + flag(option) + u'\n';
    }
    return text;
}

QString manCommands(const std::vector<Command>& table) {
    QString text = QStringLiteral(".Bl -tag -width Ds\n");
    for (const Command& command : table) {
        text += QStringLiteral(".It ") + head(command) + u'\n' + prose(command.description);
        if (command.words.empty() && command.options.empty())
            continue;
        text += QStringLiteral(".Bl -tag -width Ds\n");
        for (const CommandWord& word : command.words)
            text += QStringLiteral(".It ") + argument(word.name) + u'\n' + prose(word.help);
        for (const CommandOption& option : command.options)
            text += QStringLiteral(".It ") + flag(option) + u'\n' + prose(option.help);
        text += QStringLiteral(".El\n");
    }
    return text + QStringLiteral(".El\n");
}

QString manualCommands(const std::vector<Command>& table) {
    constexpr qsizetype width = 21;
    QString text;
    for (const Command& command : table) {
        const QString words = QStringLiteral("dorvane %1 %2")
                                  .arg(QLatin1String(command.name), QLatin1String(command.example))
                                  .trimmed();
        text += words.size() < width ? words.leftJustified(width)
                                     : words + u'\n' + QString(width, u' ');
        text += QString::fromUtf8(command.help).toHtmlEscaped() + u'\n';
    }
    return text;
}

QString busMethods() {
    QString text = QStringLiteral("| method | in | out | |\n|---|---|---|---|\n");
    for (const RemoteMethod& method : remote::all) {
        for (const QString& cell :
             {QStringLiteral("`%1`").arg(QLatin1String(method.name)), listed(argumentsOf(method)),
              listed(resultsOf(method)), QString::fromUtf8(method.says)})
            text += cell.isEmpty() ? QStringLiteral("| ") : QStringLiteral("| %1 ").arg(cell);
        text += QStringLiteral("|\n");
    }
    return text;
}

QString withPart(const QString& page, const QString& name, const QString& text) {
    const qsizetype begin = page.indexOf(u'[' + name);
    const qsizetype end = page.indexOf(name + u']', begin);
    if (begin < 0 || end < 0)
        return {};
    const qsizetype first = page.indexOf(u'\n', begin) + 1;
    return page.left(first) + text + page.mid(page.lastIndexOf(u'\n', end) + 1);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopExec.h"

namespace dorvane {

namespace {

// Every value of a desktop file is escaped once; within it a quoted argument is once more, and a
// percent sign begins a field code.
QString unescapedValue(const QString& value) {
    QString plain;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || ++i == value.size()) {
            plain += value.mid(i, 1);
            continue;
        }
        const QChar code = value[i];
        plain += code == u's'   ? u' '
                 : code == u'n' ? u'\n'
                 : code == u't' ? u'\t'
                 : code == u'r' ? u'\r'
                                : code;
    }
    return plain;
}

} // namespace

QString desktopExec(const QString& program) {
    QString quoted;
    for (const QChar character : program) {
        if (QStringLiteral("\"`$\\").contains(character))
            quoted += u'\\';
        quoted += character;
    }
    quoted.replace(u'%', QStringLiteral("%%"))
        .replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\t', QStringLiteral("\\t"));
    return u'"' + quoted + QStringLiteral("\" %u");
}

QString programOfDesktopExec(const QString& value) {
    const QString command = unescapedValue(value).trimmed();
    const bool isQuoted = command.startsWith(u'"');
    QString program;
    for (qsizetype i = isQuoted ? 1 : 0; i < command.size(); ++i) {
        if (isQuoted ? command[i] == u'"' : command[i].isSpace())
            break;
        if (isQuoted && command[i] == u'\\' && i + 1 < command.size())
            ++i;
        program += command[i];
    }
    return program.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

} // namespace dorvane

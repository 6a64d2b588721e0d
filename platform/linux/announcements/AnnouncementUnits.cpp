// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/AnnouncementUnits.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace dorvane {

namespace {

constexpr const char* keptVariables[] = {
    "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
    "LANG",           "LC_ALL",          "LC_TIME",       "TZ"};

// The manager fills in specifiers that begin with a percent sign.
QString withoutSpecifiers(QString text) {
    return text.replace(QLatin1Char('%'), QStringLiteral("%%"));
}

// One word of a setting; nothing in it ends the word or the line.
QString quoted(QString text) {
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    text.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return QLatin1Char('"') + withoutSpecifiers(std::move(text)) + QLatin1Char('"');
}

bool holdsLines(const QByteArray& contents, std::initializer_list<const char*> lines) {
    const QList<QByteArray> all = contents.split('\n');
    return std::all_of(lines.begin(), lines.end(), [&](const char* line) {
        return std::any_of(all.begin(), all.end(), [&](const QByteArray& each) {
            const QByteArray start(line);
            return start.endsWith('=') ? each.startsWith(start) : each == start;
        });
    });
}

} // namespace

AnnouncerCommand announcerCommand(const QString& bundlePath) {
    QStringList environment;
    for (const char* name : keptVariables)
        if (qEnvironmentVariableIsSet(name))
            environment << QLatin1String(name) + QLatin1Char('=') + qEnvironmentVariable(name);
    return {bundlePath + QStringLiteral("/dorvane"), environment};
}

QString announcerName(std::chrono::milliseconds sinceBoot) {
    return QStringLiteral("com.brackenfold.Dorvane.announce-%1")
        .arg(sinceBoot.count(), 13, 10, QLatin1Char('0'));
}

QString calendarOf(const QDateTime& moment) {
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral(" UTC");
}

// Nothing may keep an announcement from starting: what asks for a namespace of its own fails where
// those are refused. It is no oneshot: while that starts, so does the whole session.
QByteArray loginUnit(const AnnouncerCommand& command) {
    QString environment;
    for (const QString& variable : command.environment)
        environment += QStringLiteral("Environment=") + quoted(variable) + QLatin1Char('\n');
    QString program = command.program;
    program.replace(QLatin1Char('$'), QStringLiteral("$$"));
    return QStringLiteral("[Unit]\n"
                          "Description=Announces alarms after a login while Dorvane does not run\n"
                          "ConditionFileIsExecutable=%1\n"
                          "\n"
                          "[Service]\n"
                          "Type=exec\n"
                          "%2"
                          "ExecStart=%3 --announce --login\n"
                          "NoNewPrivileges=yes\n"
                          "UMask=0077\n"
                          "RuntimeMaxSec=20min\n"
                          "\n"
                          "[Install]\n"
                          "WantedBy=default.target\n")
        .arg(withoutSpecifiers(command.program), environment, quoted(program))
        .toUtf8();
}

bool isUnitOfEarlierVersions(const QString& name, const QByteArray& contents) {
    if (name == QStringLiteral("dorvane-announcements.target"))
        return holdsLines(contents,
                          {"Description=Announcements of alarms while Dorvane does not run"});
    if (name == QStringLiteral("dorvane-announce@.service"))
        return holdsLines(contents, {"Description=Announcement of an alarm", "Type=oneshot"}) &&
               contents.contains(" --announce %i\n");
    return name.startsWith(QStringLiteral("dorvane-")) && name.endsWith(QStringLiteral(".timer")) &&
           holdsLines(contents,
                      {"Description=Announcement of an alarm",
                       "PartOf=dorvane-announcements.target", "[X-Dorvane]", "Title=", "Text="});
}

} // namespace dorvane

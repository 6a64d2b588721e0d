// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"
#include "cli/RemoteCommands.h"
#include "core/AlarmKeys.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QRegularExpression>

namespace dorvane {

namespace {

ExitStatus misused(const QString& fault) {
    writeFault(fault);
    return ExitStatus::Usage;
}

ExitStatus showMade(const CommandServices& services, const RemoteProgram::Answer& answer) {
    if (const auto* const fault = std::get_if<RemoteProgram::Fault>(&answer))
        return tellFault(*fault);
    return showAlarm(services, std::get<QVariantList>(answer).value(0).toString());
}

QCommandLineOption option(const char* name, const char* help, const char* value = "") {
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help),
                              QString::fromLatin1(value));
}

// The options of an alarm, and the keys under which the program is told of them.
struct Options {
    QCommandLineOption in = option("in", "After so many minutes or hours: 90m or 2h.", "TIME");
    QCommandLineOption repeat = option("repeat", "Again each time that much has passed.");
    QCommandLineOption at = option("at", "When the clock shows this time: 07:30.", "TIME");
    QCommandLineOption date = option("date", "On this date: 2026-12-01.", "DATE");
    QCommandLineOption everyDay = option("every-day", "And every day after.");
    QCommandLineOption on = option("on", "On these days: mon,tue.", "DAYS");
    QCommandLineOption everyWeek = option("every-week", "And every week after.");
    QCommandLineOption sound =
        option("sound", "A sound of the library by its name, a file, or none.", "NAME|FILE");
    QCommandLineOption fade = option("fade", "Plays a long sound for 20 seconds.");
    QCommandLineOption voice = option("voice", "Speaks the title first.", "NAME");
    QCommandLineOption store =
        option("store", "Keeps a copy in the library, to be started again by its title.");
    QCommandLineOption snooze = option("snooze", "Minutes that Snooze puts it off for.", "MINUTES");

    [[nodiscard]] QList<QCommandLineOption> all() const {
        return {in, repeat, at, date, everyDay, on, everyWeek, sound, fade, voice, snooze, store};
    }
};

// A fault in what was typed, or nothing.
QString takeInterval(const QString& text, QVariantMap& alarm) {
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,9})(m|h)$"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return QStringLiteral("--in takes minutes or hours, such as 90m or 2h, not %1").arg(text);
    alarm.insert(match.captured(2) == u'm' ? key::minutes : key::hours,
                 match.captured(1).toLongLong());
    return {};
}

QString soundAsked(const QString& text) {
    if (text == QStringLiteral("none"))
        return QStringLiteral("");
    return text.contains(u'/') ? QFileInfo(text).absoluteFilePath() : text;
}

QString takeWhen(const QCommandLineParser& parser, const Options& options, QVariantMap& alarm) {
    if (parser.isSet(options.in) == parser.isSet(options.at))
        return QStringLiteral("one of --in and --at is needed");
    if (parser.isSet(options.at))
        alarm.insert(key::time, parser.value(options.at));
    if (parser.isSet(options.date))
        alarm.insert(key::date, parser.value(options.date));
    if (parser.isSet(options.on))
        alarm.insert(key::weekdays, parser.value(options.on).toLower().split(u','));
    return parser.isSet(options.in) ? takeInterval(parser.value(options.in), alarm) : QString();
}

QString takeAction(const QCommandLineParser& parser, const Options& options, QVariantMap& alarm) {
    if (parser.isSet(options.sound))
        alarm.insert(key::sound, soundAsked(parser.value(options.sound)));
    if (parser.isSet(options.voice))
        alarm.insert(key::voice, parser.value(options.voice));
    bool isNumber = true;
    if (parser.isSet(options.snooze))
        alarm.insert(key::snooze, parser.value(options.snooze).toInt(&isNumber));
    return isNumber ? QString() : QStringLiteral("--snooze takes a number of minutes");
}

} // namespace

ExitStatus runTimer(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Starts a timer, and shows it as list does."));
    parser.addPositionalArgument(QStringLiteral("MINUTES"), QStringLiteral("How long."));
    parser.addPositionalArgument(QStringLiteral("TITLE"), QStringLiteral("What for."),
                                 QStringLiteral("[TITLE]"));
    if (const auto status = readArguments(parser, arguments, {1, 2}))
        return *status;
    const QStringList words = parser.positionalArguments();
    bool isNumber = false;
    const uint minutes = words[0].toUInt(&isNumber);
    if (!isNumber)
        return misused(QStringLiteral("%1 is no number of minutes").arg(words[0]));
    return showMade(services, services.program().call(QStringLiteral("AddTimer"),
                                                      {minutes, words.value(1, QStringLiteral(""))},
                                                      RemoteProgram::Start::WhereNeeded));
}

ExitStatus runAdd(const CommandServices& services, const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Sets an alarm, and shows it as list does."));
    const Options options;
    parser.addOptions(options.all());
    parser.addPositionalArgument(QStringLiteral("TITLE"), QStringLiteral("What for."));
    if (const auto status = readArguments(parser, arguments, {1, 1}))
        return *status;
    QVariantMap alarm{{key::title, parser.positionalArguments().constFirst()}};
    for (const QString& fault :
         {takeWhen(parser, options, alarm), takeAction(parser, options, alarm)})
        if (!fault.isEmpty())
            return misused(fault);
    for (const auto& [flag, name] :
         {std::pair{options.repeat, key::repeat}, std::pair{options.everyDay, key::everyDay},
          std::pair{options.everyWeek, key::everyWeek}, std::pair{options.fade, key::fade},
          std::pair{options.store, key::store}})
        if (parser.isSet(flag))
            alarm.insert(name, true);
    return showMade(services, services.program().call(QStringLiteral("AddAlarm"), {alarm},
                                                      RemoteProgram::Start::WhereNeeded));
}

} // namespace dorvane

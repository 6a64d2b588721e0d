// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmOptions.h"

#include "core/AlarmForm.h"
#include "core/AlarmKeys.h"
#include "core/WrittenDate.h"
#include "core/WrittenTime.h"
#include "core/WrittenWeekdays.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// The names of the options, each the one in the table below.
const QString in = QStringLiteral("in");
const QString at = QStringLiteral("at");
const QString on = QStringLiteral("on");

QString dashed(const QString& option) {
    return QStringLiteral("--") + option;
}

QString misread(const QString& option, const char* wanted, const QString& typed) {
    return QStringLiteral("%1 takes %2, not \"%3\"")
        .arg(dashed(option), QString::fromLatin1(wanted), typed);
}

QString soundAsked(const QString& text) {
    if (text == QStringLiteral("none"))
        return QStringLiteral("");
    return text.contains(u'/') ? QFileInfo(text).absoluteFilePath() : text;
}

QString snoozeFault(const QString& typed) {
    auto sorted = snoozeLengths;
    std::sort(sorted.begin(), sorted.end());
    QStringList lengths;
    for (const qint64 length : sorted)
        lengths << QString::number(length);
    const QString last = lengths.takeLast();
    return QStringLiteral("--snooze takes minutes, one of %1 or %2, not \"%3\"")
        .arg(lengths.join(QStringLiteral(", ")), last, typed);
}

QString conflictIn(const QCommandLineParser& parser, bool isEdited) {
    if (parser.isSet(in) && parser.isSet(at))
        return QStringLiteral("it is either --in or --at: --in 25, or --at 7:30");
    if (!isEdited && !parser.isSet(in) && !parser.isSet(at))
        return QStringLiteral("when? Such as --in 25, or --at 7:30");
    for (const auto& [one, other] :
         {std::pair{&key::date, &in}, std::pair{&key::everyDay, &in}, std::pair{&on, &in},
          std::pair{&key::repeat, &at}, std::pair{&key::date, &on}, std::pair{&key::everyDay, &on}})
        if (parser.isSet(*one) && parser.isSet(*other))
            return QStringLiteral("%1 does not go with %2").arg(dashed(*one), dashed(*other));
    if (!isEdited && parser.isSet(key::everyWeek) && !parser.isSet(on))
        return QStringLiteral("--every-week needs days, such as --on mon,thu");
    return {};
}

// The time of day of what is edited stays where none is given.
QString takeWhen(const QCommandLineParser& parser, const QLocale& territory, const QDateTime& now,
                 const QVariantMap& edited, QVariantMap& alarm) {
    if (parser.isSet(in)) {
        const auto interval = intervalRead(parser.value(in));
        if (!interval)
            return intervalFault(dashed(in), parser.value(in));
        for (const QString& again : {key::repeat, key::store})
            if (parser.isSet(again) && interval->length % std::chrono::minutes(1) != 0s)
                return dashed(again) + QStringLiteral(" needs whole minutes, such as --in 2m");
        insertInterval(*interval, alarm);
        return {};
    }
    const QString written =
        parser.isSet(at) ? parser.value(at) : edited.value(key::time).toString();
    const auto time = timeRead(written, {}, false).time;
    if (!time && parser.isSet(at))
        return misread(at, "a time of day such as 7, 07:30 or 7:30pm", written);
    if (!time && (parser.isSet(on) || parser.isSet(key::date)))
        return QStringLiteral("at what time? Such as --at 7:30");
    if (parser.isSet(at))
        alarm.insert(key::time, timeShown(*time, false));
    if (parser.isSet(key::date)) {
        const auto date =
            dateRead(parser.value(key::date), territory, now, time.value_or(QTime())).date;
        if (!date)
            return misread(key::date, "a date such as 2026-12-24, 24 Dec, tomorrow or fri",
                           parser.value(key::date));
        alarm.insert(key::date, date->toString(Qt::ISODate));
    }
    if (parser.isSet(on)) {
        const auto days = weekdaysRead(parser.value(on), territory);
        if (!days)
            return misread(on, "days such as mon,thu, mon-fri, weekdays or weekend",
                           parser.value(on));
        alarm.insert(key::weekdays, weekdayKeys(*days));
    }
    return {};
}

QString takeAction(const QCommandLineParser& parser, QVariantMap& alarm) {
    if (parser.isSet(key::sound))
        alarm.insert(key::sound, soundAsked(parser.value(key::sound)));
    if (parser.isSet(key::voice))
        alarm.insert(key::voice, parser.value(key::voice));
    if (!parser.isSet(key::snooze))
        return {};
    const qint64 minutes = parser.value(key::snooze).toLongLong();
    if (std::find(snoozeLengths.begin(), snoozeLengths.end(), minutes) == snoozeLengths.end())
        return snoozeFault(parser.value(key::snooze));
    alarm.insert(key::snooze, minutes);
    return {};
}

// Each day after a comma, with those before it.
QStringList offeredDays(const QString& typed) {
    const QString before = typed.left(typed.lastIndexOf(u',') + 1);
    const QStringList named = before.split(u',');
    QStringList days;
    for (const char* day : {"mon", "tue", "wed", "thu", "fri", "sat", "sun"})
        if (!named.contains(QLatin1String(day)))
            days << before + QLatin1String(day);
    if (before.isEmpty())
        days << QStringLiteral("weekdays") << QStringLiteral("weekend");
    return days;
}

} // namespace

std::vector<CommandOption> alarmOptions(const CommandServices& services) {
    return {
        {"in", "After so long: 25, 90m, 2h, 1h30 or 30s.", "TIME"},
        {"repeat", "Again each time that much has passed."},
        {"at", "When the clock shows this time: 7, 07:30 or 7:30pm.", "TIME"},
        {"date", "On this date: 2026-12-24, 24 Dec, tomorrow or fri.", "DATE",
         oneOf("today tomorrow mon tue wed thu fri sat sun")},
        {"every-day", "And every day after."},
        {"on", "On these days: mon,thu, mon-fri, weekdays or weekend.", "DAYS", offeredDays},
        {"every-week", "And every week after; else once on each of the days."},
        {"sound", "A sound of the library by its name, a file, or none.", "NAME|FILE",
         [services](const QString& typed) {
             return services.soundNames && !typed.contains(u'/')
                        ? services.soundNames() << QStringLiteral("none") << QString()
                        : QStringList(QString());
         }},
        {"fade", "Plays a long sound for 20 seconds."},
        {"until-answered", "Its sound goes on until it is answered, for as long as its snooze."},
        {"softly", "Its sound begins quietly and grows for ten seconds."},
        {"voice", "Speaks the title first.", "NAME"},
        {"snooze", "Minutes that Snooze puts it off for.", "MINUTES",
         oneOf("1 2 3 5 7 9 10 15 20 30 45 60")},
        {"store", "Keeps a copy in the library, to be started again by its title."},
    };
}

std::variant<QVariantMap, QString> readAlarmOptions(const QCommandLineParser& parser,
                                                    const QLocale& territory, const QDateTime& now,
                                                    const std::optional<QVariantMap>& edited) {
    QVariantMap alarm;
    for (const QString& flag : {key::repeat, key::everyDay, key::everyWeek, key::fade,
                                key::untilAnswered, key::softly, key::store})
        if (parser.isSet(flag))
            alarm.insert(flag, true);
    QString fault = conflictIn(parser, edited.has_value());
    if (fault.isEmpty())
        fault = takeWhen(parser, territory, now, edited.value_or(QVariantMap()), alarm);
    if (fault.isEmpty())
        fault = takeAction(parser, alarm);
    if (fault.isEmpty())
        return alarm;
    return fault;
}

void insertInterval(const WrittenInterval& interval, QVariantMap& alarm) {
    using namespace std::chrono;
    const seconds length = interval.length;
    if (interval.isInHours)
        alarm.insert(key::hours, qint64(duration_cast<hours>(length).count()));
    else if (length % minutes(1) == seconds(0))
        alarm.insert(key::minutes, qint64(duration_cast<minutes>(length).count()));
    else
        alarm.insert(key::seconds, qint64(length.count()));
}

QString intervalFault(const QString& what, const QString& typed) {
    return QStringLiteral(
               "%1 takes a length of time such as 25, 90m, 2h, 1h30 or 30s, a year at most, not "
               "\"%2\"")
        .arg(what, typed);
}

QString inOptions(const QString& reason) {
    const qsizetype end = reason.indexOf(QStringLiteral("\": "));
    if (!reason.startsWith(u'"') || end < 0)
        return reason;
    const QMap<QString, QString> others{{key::title, QStringLiteral("TITLE")},
                                        {key::minutes, dashed(in)},
                                        {key::hours, dashed(in)},
                                        {key::seconds, dashed(in)},
                                        {key::time, dashed(at)},
                                        {key::weekdays, dashed(on)}};
    const QString key = reason.mid(1, end - 1);
    const QString rest = reason.mid(end + 3);
    const bool isSentence =
        rest.startsWith(QStringLiteral("is ")) || rest.startsWith(QStringLiteral("must ")) ||
        rest.startsWith(QStringLiteral("does ")) || rest.startsWith(QStringLiteral("needs "));
    return others.value(key, dashed(key)) + QLatin1String(isSentence ? " " : ": ") + rest;
}

} // namespace dorvane

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

QCommandLineOption option(const char* name, const char* help, const char* value = "") {
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help),
                              QString::fromLatin1(value));
}

QString dashed(const QCommandLineOption& option) {
    return QStringLiteral("--") + option.names().constFirst();
}

QString misread(const QCommandLineOption& option, const char* wanted, const QString& typed) {
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

} // namespace

AlarmOptions::AlarmOptions()
    : m_in(option("in", "After so long: 25, 90m, 2h, 1h30 or 30s.", "TIME"))
    , m_repeat(option("repeat", "Again each time that much has passed."))
    , m_at(option("at", "When the clock shows this time: 7, 07:30 or 7:30pm.", "TIME"))
    , m_date(option("date", "On this date: 2026-12-24, 24 Dec, tomorrow or fri.", "DATE"))
    , m_everyDay(option("every-day", "And every day after."))
    , m_on(option("on", "On these days: mon,thu, mon-fri, weekdays or weekend.", "DAYS"))
    , m_everyWeek(option("every-week", "And every week after."))
    , m_sound(option("sound", "A sound of the library by its name, a file, or none.", "NAME|FILE"))
    , m_fade(option("fade", "Plays a long sound for 20 seconds."))
    , m_voice(option("voice", "Speaks the title first.", "NAME"))
    , m_snooze(option("snooze", "Minutes that Snooze puts it off for.", "MINUTES"))
    , m_store(option("store", "Keeps a copy in the library, to be started again by its title.")) {}

QList<QCommandLineOption> AlarmOptions::all() const {
    return {m_in,        m_repeat, m_at,   m_date,  m_everyDay, m_on,
            m_everyWeek, m_sound,  m_fade, m_voice, m_snooze,   m_store};
}

std::variant<QVariantMap, QString> AlarmOptions::read(const QCommandLineParser& parser,
                                                      const QLocale& territory,
                                                      const QDateTime& now) const {
    QVariantMap alarm;
    for (const auto& [flag, key] :
         {std::pair{&m_repeat, key::repeat}, std::pair{&m_everyDay, key::everyDay},
          std::pair{&m_everyWeek, key::everyWeek}, std::pair{&m_fade, key::fade},
          std::pair{&m_store, key::store}})
        if (parser.isSet(*flag))
            alarm.insert(key, true);
    QString fault = conflictIn(parser);
    if (fault.isEmpty())
        fault = takeWhen(parser, territory, now, alarm);
    if (fault.isEmpty())
        fault = takeAction(parser, alarm);
    if (fault.isEmpty())
        return alarm;
    return fault;
}

QString AlarmOptions::conflictIn(const QCommandLineParser& parser) const {
    if (parser.isSet(m_in) && parser.isSet(m_at))
        return QStringLiteral("it is either --in or --at");
    if (!parser.isSet(m_in) && !parser.isSet(m_at))
        return QStringLiteral("when? Such as --in 25, or --at 7:30");
    for (const auto& [one, other] :
         {std::pair{&m_date, &m_in}, std::pair{&m_everyDay, &m_in}, std::pair{&m_on, &m_in},
          std::pair{&m_repeat, &m_at}, std::pair{&m_date, &m_on}, std::pair{&m_everyDay, &m_on}})
        if (parser.isSet(*one) && parser.isSet(*other))
            return QStringLiteral("%1 does not go with %2").arg(dashed(*one), dashed(*other));
    if (parser.isSet(m_everyWeek) && !parser.isSet(m_on))
        return QStringLiteral("--every-week needs days, such as --on mon,thu");
    return {};
}

QString AlarmOptions::takeWhen(const QCommandLineParser& parser, const QLocale& territory,
                               const QDateTime& now, QVariantMap& alarm) const {
    if (parser.isSet(m_in)) {
        const auto interval = intervalRead(parser.value(m_in));
        if (!interval)
            return intervalFault(dashed(m_in), parser.value(m_in));
        for (const QCommandLineOption& again : {m_repeat, m_store})
            if (parser.isSet(again) && interval->length % std::chrono::minutes(1) != 0s)
                return dashed(again) + QStringLiteral(" needs whole minutes, such as --in 2m");
        insertInterval(*interval, alarm);
        return {};
    }
    const auto time = timeRead(parser.value(m_at), {}, false).time;
    if (!time)
        return misread(m_at, "a time of day such as 7, 07:30 or 7:30pm", parser.value(m_at));
    alarm.insert(key::time, timeShown(*time, false));
    if (parser.isSet(m_date)) {
        const auto date = dateRead(parser.value(m_date), territory, now, *time).date;
        if (!date)
            return misread(m_date, "a date such as 2026-12-24, 24 Dec, tomorrow or fri",
                           parser.value(m_date));
        alarm.insert(key::date, date->toString(Qt::ISODate));
    }
    if (parser.isSet(m_on)) {
        const auto days = weekdaysRead(parser.value(m_on), territory);
        if (!days)
            return misread(m_on, "days such as mon,thu, mon-fri, weekdays or weekend",
                           parser.value(m_on));
        alarm.insert(key::weekdays, weekdayKeys(*days));
    }
    return {};
}

QString AlarmOptions::takeAction(const QCommandLineParser& parser, QVariantMap& alarm) const {
    if (parser.isSet(m_sound))
        alarm.insert(key::sound, soundAsked(parser.value(m_sound)));
    if (parser.isSet(m_voice))
        alarm.insert(key::voice, parser.value(m_voice));
    if (!parser.isSet(m_snooze))
        return {};
    const qint64 minutes = parser.value(m_snooze).toLongLong();
    if (std::find(snoozeLengths.begin(), snoozeLengths.end(), minutes) == snoozeLengths.end())
        return snoozeFault(parser.value(m_snooze));
    alarm.insert(key::snooze, minutes);
    return {};
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

} // namespace dorvane

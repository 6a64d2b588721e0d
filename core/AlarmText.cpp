// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmText.h"

#include "core/Alarm.h"
#include "core/DateHelpers.h"
#include "core/Rearm.h"

#include <QStringList>

namespace dorvane {

namespace {

constexpr WeekdaySet workdays{Weekday::Monday, Weekday::Tuesday, Weekday::Wednesday,
                              Weekday::Thursday, Weekday::Friday};

} // namespace

QString lengthText(const Alarm& alarm) {
    if (alarm.isMinuteUnits())
        return QStringLiteral("%1 min").arg(alarm.ringWithinUnits());
    return alarm.ringWithinUnits() == 1 ? QStringLiteral("1 hour")
                                        : QStringLiteral("%1 hours").arg(alarm.ringWithinUnits());
}

// An alarm without a due time comes of a damaged list.
QString dueText(const Alarm& alarm, Instant now, const QLocale& territory) {
    if (const auto next = nextRing(alarm, now))
        return dayTimeString(localDateTimeOf(*next), localDateTimeOf(now), territory);
    return alarm.isHeld(now) ? QStringLiteral("Paused") : QStringLiteral("Needs a look");
}

QString storedText(const Alarm& alarm, Instant now, const QLocale& territory) {
    if (alarm.isRelative())
        return lengthText(alarm);
    const QDateTime moment = localDateTimeOf(now);
    const RearmDecision start = rearmAtStart(alarm, moment, weekdayName(moment.date()));
    if (start.next.isValid())
        return dayTimeString(start.next, moment, territory);
    // Its weekday alone would be taken for the next one.
    const QDateTime due = alarm.time(now);
    if (start.outcome == RearmDecision::Outcome::Remove && due.isValid())
        return dateTimeString(due, moment, territory);
    return dueText(alarm, now, territory);
}

QString repetitionText(const Alarm& alarm) {
    if (alarm.isTimeWithDate())
        return alarm.shouldUseEveryDay() ? QStringLiteral("every day") : QString();
    if (alarm.isRelative())
        return alarm.shouldRepeat() ? QStringLiteral("every ") + lengthText(alarm) : QString();
    QStringList words;
    if (alarm.weekdays() == workdays)
        words << QStringLiteral("Mon-Fri");
    else
        for (const Weekday day : everyWeekday)
            if (alarm.weekdays().contains(day))
                words << englishName(day).left(3);
    if (alarm.shouldUseForever())
        words << QStringLiteral("every week");
    return words.join(u' ');
}

} // namespace dorvane

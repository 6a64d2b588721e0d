// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenAlarm.h"

#include "core/AlarmBuilding.h"
#include "core/WrittenDate.h"
#include "core/WrittenInterval.h"
#include "core/WrittenTime.h"
#include "core/WrittenWeekdays.h"

#include <algorithm>

namespace dorvane {

using namespace std::chrono;

namespace {

constexpr qsizetype mostWords = 7; // "Thu, 24 Dec 2026 at 7 pm"

QString joined(const QStringList& words) {
    return words.join(u' ');
}

bool takeInterval(const QString& text, WrittenAlarm& alarm) {
    const auto interval = intervalRead(text);
    if (!interval)
        return false;
    const minutes whole = ceil<minutes>(interval->length);
    alarm.counted = whole - interval->length;
    alarm.form.row = Alarm::Relative;
    alarm.form.isMinuteUnits = !interval->isInHours;
    alarm.form.interval =
        QString::number(interval->isInHours ? duration_cast<hours>(whole).count() : whole.count());
    return true;
}

void takeTime(QTime time, const QDateTime& now, AlarmForm& form) {
    const bool isAhead = fullDateWithTimeFrom(time, now.date(), now) > now;
    form.row = Alarm::Dated;
    form.atTimePicker = time;
    form.atDatePicker = now.date().addDays(isAhead ? 0 : 1);
}

bool isNumber(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit() || c == u' '; });
}

// A number is no day: "25 7 habits" is a timer.
bool takeDay(QStringList words, QTime time, const QLocale& territory, const QDateTime& now,
             AlarmForm& form) {
    if (words.constLast() == QStringLiteral("at"))
        words.removeLast();
    const QString day = joined(words);
    if (isNumber(day))
        return false;
    if (const auto date = dateRead(day, territory, now, time).date) {
        takeTime(time, now, form);
        form.atDatePicker = *date;
        return true;
    }
    const auto weekdays = weekdaysRead(day, territory);
    if (!weekdays)
        return false;
    form.row = Alarm::Weekly;
    form.atAlarmTimePicker = time;
    form.weekdays = *weekdays;
    form.shouldUseForever = true;
    return true;
}

// The last one or two of the words are the time: "7:15", "7 pm".
bool takeMoment(const QStringList& words, const QLocale& territory, const QDateTime& now,
                AlarmForm& form) {
    for (qsizetype count = std::min<qsizetype>(2, words.size()); count > 0; --count) {
        const QStringList days = words.mid(0, words.size() - count);
        const auto time = timeRead(joined(words.mid(days.size())), {}, false).time;
        if (!time || (days.isEmpty() && isNumber(words.constLast())))
            continue;
        if (!days.isEmpty() && days != QStringList{QStringLiteral("at")})
            return takeDay(days, *time, territory, now, form);
        takeTime(*time, now, form);
        return true;
    }
    return false;
}

} // namespace

std::optional<WrittenAlarm> alarmRead(const QString& text, const QLocale& territory,
                                      const QDateTime& now, const RingDefaults& defaults) {
    QStringList words = text.simplified().split(u' ');
    if (words.size() > 1 && words.constFirst().toLower() == QStringLiteral("in"))
        words.removeFirst();
    WrittenAlarm alarm{newAlarmForm(now, defaults.snooze)};
    alarm.form.soundPath = defaults.soundPath;
    alarm.form.isPlaySound = !defaults.soundPath.isEmpty();
    // As many words as can be read are of the time.
    for (qsizetype count = std::min(mostWords, words.size()); count > 0; --count) {
        const QStringList when = words.mid(0, count);
        if (!takeInterval(joined(when), alarm) && !takeMoment(when, territory, now, alarm.form))
            continue;
        const QString title = joined(words.mid(count));
        const bool isMinutes =
            alarm.form.row == Alarm::Relative && joined(when) == alarm.form.interval;
        alarm.form.title = !title.isEmpty() ? title
                           : isMinutes      ? joined(when) + QStringLiteral(" min")
                                            : joined(when);
        return alarm;
    }
    return std::nullopt;
}

} // namespace dorvane

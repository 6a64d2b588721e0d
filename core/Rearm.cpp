// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/Alarm.h"
#include "core/LocalTime.h"
#include "core/NextOccurrence.h"

#include <algorithm>
#include <chrono>

namespace dorvane {

namespace {

using Outcome = RearmDecision::Outcome;

// An alarm for 06:45 stays one, and so does a rhythm.
QDateTime dueWithoutSnoozes(const Alarm& alarm, const QDateTime& now) {
    return alarm.time(instantOf(now)).addSecs(-60 * qint64(alarm.snoozedMinutes()));
}

// What was asked for, which a night in which clocks are set forward may have no moment for: then
// the alarm's own moment has another time of day.
QTime wishedTimeOf(const Alarm& alarm, QTime own) {
    return alarm.wishedTime().isValid() ? alarm.wishedTime() : own;
}

// The day that the alarm is for: a night that skips the end of a day has it due on the next one.
QDate dayOf(const Alarm& alarm, const QDateTime& due) {
    const QDate before = due.date().addDays(-1);
    const QTime wished = alarm.wishedTime();
    return wished.isValid() && localMoment(before, wished) == due ? before : due.date();
}

Weekday weekdayOf(QDate date) {
    return Weekday(int(Weekday::Monday) + date.dayOfWeek() - 1);
}

RearmDecision moveDayOn(const Alarm& alarm, const QDateTime& now) {
    const QDateTime due = dueWithoutSnoozes(alarm, now);
    if (!due.isValid())
        return {};
    const QDate day = dayOf(alarm, due);
    const auto daysAfter = [&, timeOfDay = wishedTimeOf(alarm, due.time())](int days) {
        return localMoment(day.addDays(days), timeOfDay);
    };
    int count = std::max(1, int(day.daysTo(now.date())) - 1);
    while (daysAfter(count) <= now)
        ++count;
    return {Outcome::NextDay, daysAfter(count), {}, count > 1 ? daysAfter(count - 1) : QDateTime()};
}

// From one due time of a rhythm to the last one that is not after now. Whole periods are passed at
// once: nights that a rhythm in hours did not ring in leave its time of day alone.
RearmDecision movePeriodOn(const Alarm& alarm, const QDateTime& now) {
    using namespace std::chrono;
    const QDateTime due = dueWithoutSnoozes(alarm, now);
    const qint64 units = alarm.ringWithinUnits();
    if (units <= 0)
        return {};
    const auto periodsAfter = [&](const QDateTime& moment, qint64 count) {
        return alarm.isMinuteUnits() ? moment.addSecs(60 * units * count)
                                     : addingHours(moment, units * count);
    };
    // Hours of the clock's face may take longer or pass sooner.
    const seconds sure = alarm.isMinuteUnits() ? seconds(0) : hours(25);
    const seconds period = alarm.isMinuteUnits() ? seconds(minutes(units)) : hours(units);
    qint64 count = std::max<qint64>(0, (seconds(due.secsTo(now)) - sure) / period);
    while (periodsAfter(periodsAfter(due, count), 1) <= now)
        ++count;
    const QDateTime last = periodsAfter(due, count);
    return {Outcome::NextPeriod, last, {}, count > 0 ? last : QDateTime()};
}

// By the day for which it was due, whatever day it is when it is answered. Unless it is kept for
// every week, that day is used up, and so are those that have passed since.
RearmDecision moveWeekdayOn(const Alarm& alarm, const QDateTime& now) {
    const QDateTime due = dueWithoutSnoozes(alarm, now);
    const QTime timeOfDay = wishedTimeOf(alarm, alarm.runTime(instantOf(now)).time());
    QDate day = due.isValid() ? dayOf(alarm, due) : now.date();
    if (alarm.shouldUseForever())
        day = std::max(day, now.date().addDays(-8)); // the days before are like those after
    RearmDecision decision{Outcome::NextWeekday, {}, alarm.weekdays(), {}};
    while (true) {
        const Weekday weekday = weekdayOf(day);
        if (!alarm.shouldUseForever())
            decision.weekdays.set(weekday, false);
        const auto next =
            calculateNextDate(nextWeekday(weekday), decision.weekdays, timeOfDay, day);
        decision.next = next.value_or(QDateTime());
        if (!next || *next > now)
            break;
        decision.missed = *next;
        day = day.addDays(daysToNextTicked(nextWeekday(weekday), 1, decision.weekdays));
    }
    if (!decision.next.isValid())
        decision.outcome = Outcome::Remove;
    return decision;
}

// A weekday alarm moves to its next ticked day after today; unless it is kept for every week,
// today is used up first.
RearmDecision moveOnFromToday(const Alarm& alarm, Weekday today, const QDateTime& now) {
    WeekdaySet left = alarm.weekdays();
    if (!alarm.shouldUseForever())
        left.set(today, false);
    const QTime timeOfDay = wishedTimeOf(alarm, alarm.runTime(instantOf(now)).time());
    const auto next = calculateNextDate(nextWeekday(today), left, timeOfDay, now.date());
    return next ? RearmDecision{Outcome::NextWeekday, *next, left, {}}
                : RearmDecision{Outcome::NoDayLeft, {}, left, {}};
}

// The first ticked day of a weekday alarm that is set now.
QDateTime firstDay(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    const QTime timeOfDay = wishedTimeOf(alarm, alarm.time(instantOf(now)).time());
    return firstWeekdayDate(alarm.weekdays(), timeOfDay, now, todaysName);
}

} // namespace

RearmDecision rearmAfterRinging(const Alarm& alarm, const QDateTime& now,
                                const QString& todaysName) {
    if (alarm.selRowNo() == Alarm::Weekly)
        return weekdayNamed(todaysName) ? moveWeekdayOn(alarm, now) : RearmDecision{};
    if (alarm.isTimeWithDate())
        return alarm.shouldUseEveryDay() ? moveDayOn(alarm, now) : RearmDecision{};
    return alarm.isRelative() && alarm.shouldRepeat() ? movePeriodOn(alarm, now) : RearmDecision{};
}

RearmDecision rearmAtRestore(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    const RearmDecision unchanged{Outcome::Unchanged, {}, {}, {}};
    const QDateTime due = alarm.time(instantOf(now));
    if (!due.isValid() || due >= now)
        return unchanged;
    if (alarm.selRowNo() != Alarm::Weekly || alarm.weekdays().isEmpty())
        return {};
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    if (!today)
        return unchanged;
    if (const QDateTime first = firstDay(alarm, now, todaysName); first.date() == now.date())
        return {Outcome::NextWeekday, first, alarm.weekdays(), {}};
    return moveOnFromToday(alarm, *today, now);
}

bool moveOnPast(Alarm& alarm, const QDateTime& now) {
    const QDateTime due = alarm.time(instantOf(now));
    if (!due.isValid() || due >= now)
        return due.isValid();
    const RearmDecision decision =
        rearmAfterRinging(alarm, now.addMSecs(-1), weekdayName(now.date()));
    applyRearm(decision, alarm);
    return decision.outcome != Outcome::Remove;
}

std::optional<Instant> nextRing(const Alarm& alarm, Instant now) {
    if (!alarm.isHeld(now))
        return alarm.due(now);
    if (*alarm.heldUntil() == Instant::max())
        return std::nullopt;
    const auto after = alarm.storedCopy();
    return moveOnPast(*after, localDateTimeOf(*alarm.heldUntil())) ? after->due(now) : std::nullopt;
}

bool canSkip(const Alarm& alarm, Instant now) {
    const QDateTime moment = localDateTimeOf(now);
    return alarm.due(now) && !alarm.isTriggered() && !alarm.isHeld(now) &&
           rearmAfterRinging(alarm, moment, weekdayName(moment.date())).outcome != Outcome::Remove;
}

RearmDecision rearmAtStart(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    const RearmDecision unchanged{Outcome::Unchanged, {}, {}, {}};
    if (alarm.isRelative())
        return unchanged;
    const QDateTime due = alarm.time(instantOf(now));
    if (!due.isValid())
        return {};
    if (due >= now)
        return unchanged;
    if (alarm.selRowNo() != Alarm::Weekly)
        return alarm.shouldUseEveryDay() ? moveDayOn(alarm, now) : RearmDecision{};
    if (alarm.weekdays().isEmpty())
        return {};
    if (!weekdayNamed(todaysName))
        return unchanged;
    return {Outcome::NextWeekday, firstDay(alarm, now, todaysName), alarm.weekdays(), {}};
}

qint64 snoozeMinutes(const Alarm& alarm, qint64 wantedMinutes, Instant now) {
    using namespace std::chrono;
    constexpr qint64 most = 200LL * 366 * 24 * 60;
    const minutes wanted(std::clamp<qint64>(wantedMinutes, 1, most));
    const Instant due = alarm.due(now).value_or(now);
    // An alarm reports up to a second before it is due; one that is due later by now began to ring
    // before the clock was set back.
    const bool isClockSetBack = due > now + seconds(1);
    if (due + wanted > now + seconds(1) && !isClockSetBack)
        return wanted.count();
    return ceil<minutes>(now + wanted - due).count();
}

void applyRearm(const RearmDecision& decision, Alarm& alarm) {
    const QTime wished = wishedTimeOf(alarm, alarm.storedTime().time());
    switch (decision.outcome) {
    case Outcome::Remove:
    case Outcome::Unchanged:
        break;
    case Outcome::NextDay:
        alarm.setRunTime({});
        alarm.setTimeWishedAt(decision.next, wished);
        break;
    case Outcome::NextPeriod:
        alarm.setRunTime(decision.next);
        break;
    case Outcome::NextWeekday:
        alarm.setWeekdays(decision.weekdays);
        alarm.setTimeWishedAt(decision.next, wished);
        alarm.setRunTime(decision.next);
        break;
    case Outcome::NoDayLeft:
        alarm.setWeekdays(decision.weekdays);
        break;
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/Alarm.h"
#include "core/LocalTime.h"
#include "core/NextOccurrence.h"

namespace dorvane {

namespace {

using Outcome = RearmDecision::Outcome;

// A weekday alarm moves to its next ticked day after today; unless it is kept for every week,
// today is used up first.
RearmDecision moveOn(const Alarm& alarm, Weekday today, const QDateTime& now) {
    WeekdaySet left = alarm.weekdays();
    if (!alarm.shouldUseForever())
        left.set(today, false);
    const QTime timeOfDay = alarm.runTime(instantOf(now)).time();
    const auto next = calculateNextDate(nextWeekday(today), left, timeOfDay, now.date());
    return next ? RearmDecision{Outcome::NextWeekday, *next, left}
                : RearmDecision{Outcome::NoDayLeft, {}, left};
}

// An alarm for 06:45 stays one, and so does a rhythm.
QDateTime dueWithoutSnoozes(const Alarm& alarm, const QDateTime& now) {
    return alarm.time(instantOf(now)).addSecs(-60 * qint64(alarm.snoozedMinutes()));
}

RearmDecision moveDayOn(const Alarm& alarm, const QDateTime& now) {
    const QDateTime due = dueWithoutSnoozes(alarm, now);
    if (!due.isValid())
        return {Outcome::Remove, {}, {}};
    return {Outcome::NextDay, addingDays(due, 1), {}};
}

// What becomes of an alarm that did not ring in time, unless it is a weekday alarm, which is due on
// another day: then nothing.
std::optional<RearmDecision> decidedUnlessMissed(const Alarm& alarm, const QDateTime& now,
                                                 const QString& todaysName) {
    const QDateTime due = alarm.time(instantOf(now));
    if (!due.isValid() || due >= now)
        return RearmDecision{Outcome::Unchanged, {}, {}};
    if (alarm.selRowNo() != Alarm::Weekly || alarm.weekdays().isEmpty())
        return RearmDecision{Outcome::Remove, {}, {}};
    if (!weekdayNamed(todaysName))
        return RearmDecision{Outcome::Unchanged, {}, {}};
    return std::nullopt;
}

// All but the last of the rings that a rhythm has missed, at once: there may be a year of them.
void skipPeriods(Alarm& alarm, const QDateTime& now) {
    const qint64 units = alarm.ringWithinUnits();
    const QDateTime start = alarm.storedRunTime();
    if (alarm.isTimeWithDate() || alarm.selRowNo() >= Alarm::Weekly || units <= 0)
        return;
    const qint64 unit = alarm.isMinuteUnits() ? 60 : 60 * 60;
    const qint64 periods = start.secsTo(now) / (units * unit) - 1;
    if (periods > 0)
        alarm.setRunTime(alarm.isMinuteUnits() ? start.addSecs(periods * units * unit)
                                               : addingHours(start, periods * units));
}

} // namespace

RearmDecision rearmAfterRinging(const Alarm& alarm, const QDateTime& now,
                                const QString& todaysName) {
    const RearmDecision remove{Outcome::Remove, {}, {}};
    if (alarm.selRowNo() != Alarm::Weekly) {
        if (alarm.isTimeWithDate())
            return alarm.shouldUseEveryDay() ? moveDayOn(alarm, now) : remove;
        return alarm.shouldRepeat()
                   ? RearmDecision{Outcome::NextPeriod, dueWithoutSnoozes(alarm, now), {}}
                   : remove;
    }
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    const RearmDecision decision = today ? moveOn(alarm, *today, now) : remove;
    return decision.outcome == Outcome::NoDayLeft ? remove : decision;
}

RearmDecision rearmAtRestore(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    const auto decided = decidedUnlessMissed(alarm, now, todaysName);
    return decided ? *decided : moveOn(alarm, *weekdayNamed(todaysName), now);
}

bool moveOnPast(Alarm& alarm, const QDateTime& now) {
    for (bool isFirst = true;; isFirst = false) {
        const QDateTime due = dueWithoutSnoozes(alarm, now);
        if (!due.isValid() || alarm.time(instantOf(now)) >= now)
            return due.isValid();
        const RearmDecision decision = rearmAfterRinging(alarm, due, weekdayName(due.date()));
        if (decision.outcome == Outcome::Remove)
            return false;
        applyRearm(decision, alarm);
        if (isFirst)
            skipPeriods(alarm, now);
        if (alarm.time(instantOf(now)) <= due)
            return false; // a rhythm of nothing
    }
}

RearmDecision rearmAtStart(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    if (const auto decided = decidedUnlessMissed(alarm, now, todaysName))
        return *decided;
    const QTime timeOfDay = alarm.time(instantOf(now)).time();
    const QDateTime timeToday =
        localMoment(now.date(), QTime(timeOfDay.hour(), timeOfDay.minute()));
    return {Outcome::NextWeekday, firstWeekdayDate(alarm.weekdays(), timeToday, now, todaysName),
            alarm.weekdays()};
}

void applyRearm(const RearmDecision& decision, Alarm& alarm) {
    switch (decision.outcome) {
    case Outcome::Remove:
    case Outcome::Unchanged:
        break;
    case Outcome::NextDay:
        alarm.setRunTime({});
        alarm.setTime(decision.next);
        break;
    case Outcome::NextPeriod:
        alarm.setRunTime(decision.next);
        break;
    case Outcome::NextWeekday:
        alarm.setWeekdays(decision.weekdays);
        alarm.setTime(decision.next);
        alarm.setRunTime(decision.next);
        break;
    case Outcome::NoDayLeft:
        alarm.setWeekdays(decision.weekdays);
        break;
    }
}

} // namespace dorvane

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
    const QDateTime due = alarm.time(instantOf(now));
    if (!due.isValid() || due >= now)
        return {Outcome::Unchanged, {}, {}};
    if (alarm.selRowNo() != Alarm::Weekly || alarm.weekdays().isEmpty())
        return {Outcome::Remove, {}, {}};
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    return today ? moveOn(alarm, *today, now) : RearmDecision{Outcome::Unchanged, {}, {}};
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

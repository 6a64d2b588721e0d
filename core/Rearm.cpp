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
RearmDecision moveOn(const Alarm& alarm, Weekday today, QDate date) {
    RearmDecision decision{Outcome::NextWeekday, {}, alarm.weekdays()};
    if (!alarm.shouldUseForever())
        decision.weekdays.set(today, false);
    const auto next =
        calculateNextDate(nextWeekday(today), decision.weekdays, alarm.runTime().time(), date);
    if (next)
        decision.next = *next;
    return decision;
}

RearmDecision moveDayOn(const Alarm& alarm) {
    // From the time itself, without snoozes: an alarm for 06:45 stays one.
    const QDateTime due = alarm.time().addSecs(-60 * qint64(alarm.snoozedMinutes()));
    if (!due.isValid())
        return {Outcome::Remove, {}, {}};
    return {Outcome::NextDay, addingDays(due, 1), {}};
}

} // namespace

RearmDecision rearmAfterRinging(const Alarm& alarm, const QDateTime& now,
                                const QString& todaysName) {
    if (alarm.selRowNo() != Alarm::Weekly) {
        if (alarm.isTimeWithDate())
            return alarm.shouldUseEveryDay() ? moveDayOn(alarm)
                                             : RearmDecision{Outcome::Remove, {}, {}};
        return {alarm.shouldRepeat() ? Outcome::NextPeriod : Outcome::Remove, {}, {}};
    }
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    if (!today)
        return {Outcome::Remove, {}, {}};
    RearmDecision decision = moveOn(alarm, *today, now.date());
    if (!decision.next.isValid())
        decision.outcome = Outcome::Remove;
    return decision;
}

RearmDecision rearmAtRestore(const Alarm& alarm, const QDateTime& now, const QString& todaysName) {
    const QDateTime due = alarm.time();
    if (!due.isValid() || due >= now)
        return {Outcome::Unchanged, {}, {}};
    if (alarm.selRowNo() != Alarm::Weekly || alarm.weekdays().isEmpty())
        return {Outcome::Remove, {}, {}};
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    // With no ticked day left it keeps its past time and so rings at the first tick.
    return today ? moveOn(alarm, *today, now.date()) : RearmDecision{Outcome::Unchanged, {}, {}};
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
        // Counted from the due time without snoozes, so that the rhythm stays.
        alarm.setSnoozedMinutes(0);
        alarm.setRunTime(alarm.time());
        break;
    case Outcome::NextWeekday:
        alarm.setWeekdays(decision.weekdays);
        if (decision.next.isValid()) {
            alarm.setTime(decision.next);
            alarm.setRunTime(alarm.time());
        }
        break;
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/MissedAlarm.h"

#include "core/LocalTime.h"
#include "core/Rearm.h"

namespace dorvane {

namespace {

RearmDecision nextDay(const Alarm& alarm, const QDateTime& now) {
    return rearmAtRestore(alarm, now, weekdayName(now.date()));
}

std::optional<QDateTime> nextDue(const Alarm& alarm, const QDateTime& now) {
    if (alarm.isRelative()) {
        const AlarmPtr fresh = alarm.copy(instantOf(now));
        fresh->setRunTime(now);
        return fresh->time(instantOf(now));
    }
    if (alarm.selRowNo() == Alarm::Weekly) {
        const RearmDecision decision = nextDay(alarm, now);
        return decision.outcome == RearmDecision::Outcome::NextWeekday
                   ? std::optional(decision.next)
                   : std::nullopt;
    }
    const QDateTime time = alarm.storedTime();
    if (!alarm.shouldUseEveryDay() || !time.isValid())
        return std::nullopt;
    const QDateTime today = addingDays(time, int(time.date().daysTo(now.date())));
    return today >= now ? today : addingDays(time, int(time.date().daysTo(now.date())) + 1);
}

} // namespace

std::optional<QDateTime> dueAgain(const MissedAlarm& missed, const QDateTime& now) {
    const QDateTime due = localDateTimeOf(missed.due);
    return due >= now ? due : nextDue(*missed.alarm, now);
}

void startAgain(const MissedAlarm& missed, const QDateTime& now,
                const std::function<void(const AlarmPtr& alarm)>& schedule) {
    Alarm& alarm = *missed.alarm;
    const QDateTime start = alarm.storedRunTime();
    const bool isAhead = missed.due >= instantOf(now);
    if (!isAhead && alarm.selRowNo() == Alarm::Weekly)
        applyRearm(nextDay(alarm, now), alarm);
    else if (!isAhead && !alarm.isRelative())
        alarm.setTime(dueAgain(missed, now).value_or(QDateTime()));
    schedule(missed.alarm); // which lets a timer count from now
    if (!isAhead)
        return;
    if (alarm.isRelative() && start.isValid())
        alarm.setRunTime(start);
    snoozeUntil(alarm, missed.due);
}

} // namespace dorvane

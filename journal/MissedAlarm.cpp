// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/MissedAlarm.h"

#include "core/Rearm.h"

namespace dorvane {

namespace {

// When its time has passed.
RearmDecision nextDay(const Alarm& alarm, const QDateTime& now) {
    return (alarm.selRowNo() == Alarm::Weekly ? rearmAtRestore
                                              : rearmAtStart)(alarm, now, weekdayName(now.date()));
}

std::optional<QDateTime> nextDue(const Alarm& alarm, const QDateTime& now) {
    if (alarm.isRelative()) {
        const AlarmPtr fresh = alarm.copy(instantOf(now));
        fresh->setRunTime(now);
        return fresh->time(instantOf(now));
    }
    const RearmDecision decision = nextDay(alarm, now);
    return decision.next.isValid() ? std::optional(decision.next) : std::nullopt;
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
    if (!isAhead)
        applyRearm(nextDay(alarm, now), alarm);
    schedule(missed.alarm); // which lets a timer count from now
    if (!isAhead)
        return;
    if (alarm.isRelative() && start.isValid())
        alarm.setRunTime(start);
    snoozeUntil(alarm, missed.due);
}

} // namespace dorvane

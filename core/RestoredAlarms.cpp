// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RestoredAlarms.h"

#include "core/Clock.h"
#include "core/Rearm.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

RestoredAlarms::Dates RestoredAlarms::Dates::of(const Alarm& alarm) {
    return {alarm.storedTime(), alarm.storedRunTime(), alarm.weekdays()};
}

RestoredAlarms::RestoredAlarms(RunLoop& runLoop, Clock& clock)
    : m_runLoop(runLoop), m_clock(clock) {}

void RestoredAlarms::restore(const std::vector<AlarmPtr>& stored, AlarmDelegate& delegate) {
    m_delegate = &delegate;
    m_start = m_looked = m_runLoop.sinceBoot();
    m_wallThen = instantNow(m_runLoop);
    m_clockSet = m_runLoop.whenClockIsSet([this] { clockWasSet(); });
    for (const AlarmPtr& alarm : stored)
        if (!putBack(alarm))
            m_dropped.push_back(alarm);
}

// False, and the alarm is as it was, when it has had its time.
bool RestoredAlarms::putBack(const AlarmPtr& alarm) {
    const QDateTime now = m_runLoop.now();
    const Dates before = Dates::of(*alarm);
    const RearmDecision decision = rearmAtRestore(*alarm, now, weekdayName(now.date()));
    if (decision.outcome == RearmDecision::Outcome::Remove)
        return false;
    applyRearm(decision, *alarm);
    // Each goes to the front, so that the list comes back in reverse.
    m_clock.insertAlarm(alarm);
    alarm->setDelegate(m_delegate);
    m_restored.push_back({alarm, before, Dates::of(*alarm)});
    return true;
}

// Runs before anything that the new time makes due.
void RestoredAlarms::clockWasSet() {
    const auto sinceBoot = m_runLoop.sinceBoot();
    if (sinceBoot - m_start > doubt) {
        m_clockSet.cancel();
        return;
    }
    const Instant now = instantNow(m_runLoop);
    const auto jump = (now - m_wallThen) - (sinceBoot - m_looked); // not a sleep, nor a zone
    m_looked = sinceBoot;
    m_wallThen = now;
    if (std::chrono::abs(jump) < 1s)
        return;
    shiftTimers(jump);
    const std::vector<AlarmPtr> dropped = dropAgain();
    const std::vector<AlarmPtr> back = putBackAgain();
    m_dropped.insert(m_dropped.end(), dropped.begin(), dropped.end());
    if (m_corrected && (!back.empty() || !dropped.empty()))
        m_corrected(back, dropped);
}

// Whoever started it, in which run: it counts what has passed since.
void RestoredAlarms::shiftTimers(std::chrono::milliseconds by) {
    for (const AlarmPtr& alarm : m_clock.allAlarms()) {
        const QDateTime start = alarm->storedRunTime();
        if (alarm->isTimeWithDate() || alarm->selRowNo() >= Alarm::Weekly || !start.isValid())
            continue;
        const quint64 snoozed = alarm->snoozedMinutes();
        alarm->setRunTime(start.addMSecs(by.count()));
        alarm->setSnoozedMinutes(snoozed);
    }
    m_clock.alarmDidChange();
}

// Takes back what was put back and would not have been, and moves weekday alarms anew.
std::vector<AlarmPtr> RestoredAlarms::dropAgain() {
    std::vector<AlarmPtr> dropped;
    for (const Restored& restored : std::exchange(m_restored, {})) {
        const AlarmPtr& alarm = restored.alarm;
        if (!isAsPutBack(restored))
            continue;
        alarm->setWeekdays(restored.before.weekdays);
        alarm->setTime(restored.before.time);
        alarm->setRunTime(restored.before.runTime);
        if (putBack(alarm))
            continue;
        m_clock.removeAlarm(alarm);
        dropped.push_back(alarm);
    }
    return dropped;
}

std::vector<AlarmPtr> RestoredAlarms::putBackAgain() {
    std::vector<AlarmPtr> back;
    std::erase_if(m_dropped, [&](const AlarmPtr& alarm) {
        const bool isBack = putBack(alarm);
        if (isBack)
            back.push_back(alarm);
        return isBack;
    });
    return back;
}

// What has rung, was changed or ended since is the user's.
bool RestoredAlarms::isAsPutBack(const Restored& restored) const {
    const auto& running = m_clock.allAlarms();
    const Alarm& alarm = *restored.alarm;
    const bool isTimer = !alarm.isTimeWithDate() && alarm.selRowNo() < Alarm::Weekly;
    return !isTimer && !alarm.isTriggered() && alarm.snoozedMinutes() == 0 &&
           Dates::of(alarm) == restored.after &&
           std::find(running.begin(), running.end(), restored.alarm) != running.end();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RestoredAlarms.h"

#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "core/Rearm.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

bool isTimer(const Alarm& alarm) {
    return !alarm.isTimeWithDate() && alarm.selRowNo() < Alarm::Weekly;
}

} // namespace

RestoredAlarms::Dates RestoredAlarms::Dates::of(const Alarm& alarm) {
    return {alarm.storedTime(), alarm.wishedTime(), alarm.storedRunTime(), alarm.snoozedMinutes(),
            alarm.weekdays()};
}

void RestoredAlarms::Dates::giveTo(Alarm& alarm) const {
    alarm.setWeekdays(weekdays);
    alarm.setTimeWishedAt(time, wishedTime);
    alarm.setRunTime(runTime);
    alarm.setSnoozedMinutes(snoozed);
}

RestoredAlarms::RestoredAlarms(RunLoop& runLoop, Clock& clock)
    : m_runLoop(runLoop), m_clock(clock) {}

void RestoredAlarms::begin(AlarmDelegate& delegate, bool resumes) {
    if (m_restored.empty() && m_dropped.empty())
        m_resumes = resumes;
    if (std::exchange(m_delegate, &delegate))
        return;
    m_start = m_looked = m_runLoop.sinceBoot();
    m_wallThen = instantNow(m_runLoop);
    m_clockSet = m_runLoop.whenClockIsSet([this] { clockWasSet(); });
}

// Each goes to the front, so that the list comes back in reverse.
RestoredAlarms::Decisions RestoredAlarms::restore(const std::vector<AlarmPtr>& stored,
                                                  AlarmDelegate& delegate) {
    begin(delegate, false);
    const Instant now = instantNow(m_runLoop);
    Decisions decisions;
    for (const AlarmPtr& alarm : stored)
        if (RunningAlarm left{alarm, alarm->due(now).value_or(now)}; !putBack(left, decisions))
            decisions.dropped.push_back(left);
    m_dropped.insert(m_dropped.end(), decisions.dropped.begin(), decisions.dropped.end());
    return decisions;
}

RestoredAlarms::Decisions RestoredAlarms::resume(const std::vector<RunningAlarm>& running,
                                                 const std::vector<AlarmPtr>& undated,
                                                 AlarmDelegate& delegate) {
    begin(delegate, true);
    Decisions decisions;
    for (auto alarm = undated.rbegin(); alarm != undated.rend(); ++alarm) {
        m_clock.insertAlarm(*alarm);
        (*alarm)->setDelegate(m_delegate);
    }
    for (auto each = running.rbegin(); each != running.rend(); ++each) {
        RunningAlarm left = *each;
        snoozeUntil(*left.alarm, left.due);
        if (!putBack(left, decisions))
            decisions.dropped.push_back(left);
    }
    m_dropped.insert(m_dropped.end(), decisions.dropped.begin(), decisions.dropped.end());
    return decisions;
}

// False, and the alarm is as it was but for what a pause held, when it has had its time.
bool RestoredAlarms::putBack(RunningAlarm& left, Decisions& decisions) {
    const AlarmPtr& alarm = left.alarm;
    passPause(left, m_pausedUntil, instantNow(m_runLoop));
    const Dates before = Dates::of(*alarm);
    if (!decide(left, decisions)) {
        before.giveTo(*alarm);
        return false;
    }
    const Dates decided = Dates::of(*alarm);
    m_clock.insertAlarm(alarm); // which lets a timer count from now
    if (m_resumes && !(alarm->isRelative() && decided.runTime.isNull()))
        decided.giveTo(*alarm);
    alarm->setDelegate(m_delegate);
    m_restored.push_back({left, before, Dates::of(*alarm)});
    return true;
}

bool RestoredAlarms::decide(const RunningAlarm& left, Decisions& decisions) {
    const QDateTime now = m_runLoop.now();
    Alarm& alarm = *left.alarm;
    bool movesOn = left.due < instantOf(now);
    if (m_resumes) {
        if (!moveOnPast(alarm, now))
            return false;
    } else {
        const RearmDecision decision = rearmAtRestore(alarm, now, weekdayName(now.date()));
        if (decision.outcome == RearmDecision::Outcome::Remove)
            return false;
        applyRearm(decision, alarm);
        movesOn = decision.outcome == RearmDecision::Outcome::NextWeekday;
    }
    if (movesOn)
        decisions.movedOn.push_back(left);
    return true;
}

void RestoredAlarms::putBackPaused() {
    Decisions changes;
    putBackAgain(changes);
    if (m_corrected && !changes.back.empty())
        m_corrected(changes);
}

void RestoredAlarms::takeBack() {
    if (m_resumes)
        return;
    m_dropped.clear();
    for (const Restored& restored : std::exchange(m_restored, {}))
        if (isUntouched(restored))
            m_clock.removeAlarm(restored.was.alarm);
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
    Decisions changes;
    dropAgain(changes);
    putBackAgain(changes);
    m_dropped.insert(m_dropped.end(), changes.dropped.begin(), changes.dropped.end());
    const bool isNothing =
        changes.back.empty() && changes.dropped.empty() && changes.movedOn.empty();
    if (m_corrected && !isNothing)
        m_corrected(changes);
}

// Whoever started it: it counts what has passed since. One that runs on from an earlier run was
// started by a clock that was right.
void RestoredAlarms::shiftTimers(std::chrono::milliseconds by) {
    for (const AlarmPtr& alarm : m_clock.allAlarms()) {
        const QDateTime start = alarm->storedRunTime();
        if (!isTimer(*alarm) || !start.isValid() || runsOn(alarm))
            continue;
        const quint64 snoozed = alarm->snoozedMinutes();
        alarm->setRunTime(start.addMSecs(by.count()));
        alarm->setSnoozedMinutes(snoozed);
    }
    m_clock.alarmDidChange();
}

// Takes back what was put back and would not have been, and moves on anew.
void RestoredAlarms::dropAgain(Decisions& decisions) {
    for (Restored& restored : std::exchange(m_restored, {})) {
        if (!isAsPutBack(restored)) {
            m_restored.push_back(restored);
            continue;
        }
        restored.before.giveTo(*restored.was.alarm);
        if (putBack(restored.was, decisions))
            continue;
        m_clock.removeAlarm(restored.was.alarm);
        decisions.dropped.push_back(restored.was);
    }
}

void RestoredAlarms::putBackAgain(Decisions& decisions) {
    std::erase_if(m_dropped, [&](RunningAlarm& left) {
        const bool isBack = putBack(left, decisions);
        if (isBack)
            decisions.back.push_back(left.alarm);
        return isBack;
    });
}

// What has rung, was changed or ended since is the user's.
bool RestoredAlarms::isUntouched(const Restored& restored) const {
    const auto& running = m_clock.allAlarms();
    const Alarm& alarm = *restored.was.alarm;
    return !alarm.isTriggered() && Dates::of(alarm) == restored.after &&
           std::find(running.begin(), running.end(), restored.was.alarm) != running.end();
}

// A timer that was started anew has been moved along.
bool RestoredAlarms::isAsPutBack(const Restored& restored) const {
    return (m_resumes || !isTimer(*restored.was.alarm)) && isUntouched(restored);
}

bool RestoredAlarms::runsOn(const AlarmPtr& alarm) const {
    return m_resumes &&
           std::any_of(m_restored.begin(), m_restored.end(), [&](const Restored& restored) {
               return restored.was.alarm == alarm &&
                      (isAsPutBack(restored) || alarm->storedRunTime() == restored.before.runTime);
           }); // and not from where it was moved on to
}

} // namespace dorvane

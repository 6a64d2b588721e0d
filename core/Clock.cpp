// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include "core/NotificationNames.h"

#include <algorithm>
#include <limits>

namespace dorvane {

using namespace std::chrono_literals;

Clock::Clock(RunLoop& runLoop, NotificationCenter& notifications)
    : m_runLoop(runLoop), m_notifications(notifications) {
    runTimer();
    m_wakeObservation =
        m_notifications.addObserver(wakeNotification, [this](const void*) { awakeFromSleep(); });
}

void Clock::runTimer() {
    const QDateTime now = m_runLoop.now();
    // On whole seconds, and only in the default mode: while our menu is open nothing may ring.
    m_clockTimer = m_runLoop.scheduleAligned(
        now.addMSecs(-now.time().msec()), 1s, [this] { updateAlarms(); }, RunLoopMode::Default);
    updateAlarms();
}

void Clock::updateAlarms() {
    const Instant now = instantOf(m_runLoop.now());
    for (const AlarmPtr& alarm : m_alarms)
        alarm->tick(now);
}

void Clock::awakeFromSleep() {
    // The machine is given a moment to find its sound and its screen again.
    m_wakeTimer = m_runLoop.scheduleOnce(
        1s, [this] { runTimer(); }, RunLoopMode::Default);
}

void Clock::insertAlarm(const AlarmPtr& alarm) {
    alarm->setIsActive(true);
    insertAlarmAtIndex(alarm, 0);
}

void Clock::insertAlarmAtIndex(AlarmPtr alarm, int index) {
    alarm->setRunTime(alarm->selRowNo() == Alarm::Weekly ? alarm->time() : m_runLoop.now());
    std::erase(m_alarms, alarm);
    m_alarms.insert(m_alarms.begin() + index, std::move(alarm));
    announceChange();
}

void Clock::removeAlarm(AlarmPtr alarm) { // NOLINT(performance-unnecessary-value-param)
    if (std::erase(m_alarms, alarm) > 0)
        announceChange();
}

bool Clock::replaceAlarm(const AlarmPtr& old, const AlarmPtr& replacement) {
    const auto found = std::find(m_alarms.begin(), m_alarms.end(), old);
    if (found == m_alarms.end())
        return false;
    *found = replacement;
    announceChange();
    return true;
}

AlarmPtr Clock::nearestAlarm() const {
    const Instant now = instantOf(m_runLoop.now());
    AlarmPtr best;
    qint64 bestSeconds = std::numeric_limits<qint64>::max();
    for (const AlarmPtr& alarm : m_alarms) {
        const qint64 seconds = alarm->secondsFromNow(now);
        if (seconds < bestSeconds) {
            best = alarm;
            bestSeconds = seconds;
        }
    }
    return best;
}

void Clock::alarmDidChange() {
    announceChange();
}

void Clock::announceChange() {
    m_notifications.post(alarmsDidChangeNotification, this);
}

} // namespace dorvane

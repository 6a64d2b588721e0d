// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include "core/NotificationNames.h"
#include "core/WholeSecond.h"

#include <QRandomGenerator>

#include <algorithm>
#include <limits>
#include <string_view>

namespace dorvane {

using namespace std::chrono_literals;

Clock::Clock(RunLoop& runLoop, NotificationCenter& notifications)
    : m_runLoop(runLoop), m_notifications(notifications) {
    runTimer();
    m_clockSet = m_runLoop.whenClockIsSet([this] { sleepUntilNextTick(); });
    m_wakeObservation =
        m_notifications.addObserver(wakeNotification, [this](const void*) { awakeFromSleep(); });
}

Clock::~Clock() {
    for (const AlarmPtr& alarm : m_alarms)
        alarm->setDueChanged({});
}

void Clock::runTimer() {
    updateAlarms();
}

void Clock::updateAlarms() {
    const Instant moment = rightAfterWholeSecond(instantNow(m_runLoop));
    for (const AlarmPtr& alarm : m_alarms)
        alarm->tick(moment);
    sleepUntilNextTick();
}

void Clock::sleepUntilNextTick() {
    m_nextTick.reset();
    m_clockTimer.cancel();
    const Instant now = instantNow(m_runLoop);
    std::optional<Instant> next;
    for (const AlarmPtr& alarm : m_alarms)
        if (const auto tick = alarm->nextTick(now))
            next = std::min(next.value_or(*tick), *tick);
    if (next)
        sleepUntil(*next);
}

// A timer that is early costs a look, and looking is always right; so one changed alarm can only
// bring the next tick forward, and need not ask all others.
void Clock::sleepUntilTickOf(const Alarm& alarm) {
    const auto tick = alarm.nextTick(instantNow(m_runLoop));
    if (tick && (!m_nextTick || *tick < *m_nextTick))
        sleepUntil(*tick);
}

void Clock::sleepUntil(Instant moment) {
    m_nextTick = moment;
    // In any mode: no ring waits for a menu.
    m_clockTimer = m_runLoop.scheduleAt(
        localDateTimeOf(moment), [this] { updateAlarms(); }, RunLoopMode::Common);
}

void Clock::watch(const AlarmPtr& alarm) {
    alarm->setDueChanged([this, changed = alarm.get()] { sleepUntilTickOf(*changed); });
    sleepUntilTickOf(*alarm);
}

void Clock::awakeFromSleep() {
    // The machine is given a moment to find its sound and its screen again.
    m_wakeTimer = m_runLoop.scheduleOnce(
        1s, [this] { runTimer(); }, RunLoopMode::Common);
}

void Clock::insertAlarm(const AlarmPtr& alarm) {
    alarm->setIsActive(true);
    insertAlarmAtIndex(alarm, 0);
}

void Clock::insertAlarmAtIndex(AlarmPtr alarm, int index) {
    const QDateTime now = m_runLoop.now();
    alarm->setRunTime(alarm->selRowNo() == Alarm::Weekly ? alarm->time(instantOf(now)) : now);
    std::erase(m_alarms, alarm);
    if (alarm->identity().isEmpty())
        alarm->setIdentity(newIdentity());
    m_identities.insert(alarm->identity());
    watch(alarm);
    m_alarms.insert(m_alarms.begin() + index, std::move(alarm));
    announceChange();
}

// Drawn by lot, so that what a script remembers of an earlier run is not another alarm now.
// Without vowels no words come about.
QString Clock::newIdentity() const {
    constexpr std::string_view characters = "bcdfghjkmnpqrstvwxz23456789";
    constexpr quint32 letters = 19; // the first is one of them, so that no number comes about
    QString identity;
    do {
        identity.clear();
        while (identity.size() < 4)
            identity += QLatin1Char(characters[QRandomGenerator::global()->bounded(
                identity.isEmpty() ? letters : quint32(characters.size()))]);
    } while (m_identities.contains(identity));
    return identity;
}

void Clock::removeAlarm(AlarmPtr alarm) { // NOLINT(performance-unnecessary-value-param)
    if (std::erase(m_alarms, alarm) == 0)
        return;
    alarm->setDueChanged({});
    alarm->setHeldUntil({}); // a pause may end before it is put back
    m_identities.remove(alarm->identity());
    sleepUntilNextTick();
    announceChange();
}

bool Clock::replaceAlarm(const AlarmPtr& old, const AlarmPtr& replacement) {
    const auto found = std::find(m_alarms.begin(), m_alarms.end(), old);
    if (found == m_alarms.end())
        return false;
    old->setDueChanged({});
    replacement->setIdentity(old->identity());
    *found = replacement;
    watch(replacement);
    announceChange();
    return true;
}

AlarmPtr Clock::nearestAlarm(Instant now) const {
    AlarmPtr best;
    qint64 bestSeconds = std::numeric_limits<qint64>::max();
    for (const AlarmPtr& alarm : m_alarms) {
        const qint64 seconds = alarm->secondsFromNow(now);
        if (seconds < bestSeconds && alarm->due(now) && !alarm->isHeld(now)) {
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

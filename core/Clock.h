// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <QSet>

#include <optional>
#include <vector>

namespace dorvane {

// Owns the running alarms and has each of them report when it is due. What is reported when, and in
// which order, is what a tick on every whole second would find; but the clock sleeps through the
// seconds on which there is nothing to find. Main thread only.
class Clock {
public:
    // Starts ticking at once. Both must outlive the clock.
    Clock(RunLoop& runLoop, NotificationCenter& notifications);
    ~Clock();
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    // The one instance of the application.
    static Clock& sharedClock();

    // Puts the alarm at the front. Its run time starts afresh: at its own due time for a weekday
    // alarm, now for every other kind. An alarm that is in the list already is moved; one that has
    // no identity is given one, of four small letters and digits.
    void insertAlarm(const AlarmPtr& alarm);
    // The same at an index of 0 to the count of the other alarms; does not touch isActive. By
    // value, here and below, since the pointer given may be the one in the list.
    void insertAlarmAtIndex(AlarmPtr alarm, int index);

    // An alarm that is not in the list is ignored.
    void removeAlarm(AlarmPtr alarm);

    // Puts `replacement` in the place of `old`, with its identity, without touching its dates.
    // False, and nothing happens, when `old` is not in the list.
    [[nodiscard]] bool replaceAlarm(const AlarmPtr& old, const AlarmPtr& replacement);

    // The alarm that is due soonest by whole seconds, of several the one nearest the front; null
    // when there is none but such as are held back.
    [[nodiscard]] AlarmPtr nearestAlarm(Instant now) const;

    // Most recently inserted first. The list itself: do not insert or remove while walking it.
    [[nodiscard]] const std::vector<AlarmPtr>& allAlarms() const { return m_alarms; }

    // To be called when an alarm in the list was changed from outside: tells whoever shows it.
    void alarmDidChange();

    // Ticks at once, whatever the second.
    void runTimer();

private:
    void updateAlarms();
    void awakeFromSleep();
    [[nodiscard]] QString newIdentity() const;
    void watch(const AlarmPtr& alarm);
    void sleepUntilNextTick();
    void sleepUntilTickOf(const Alarm& alarm);
    void sleepUntil(Instant moment);
    void announceChange();

    RunLoop& m_runLoop;
    NotificationCenter& m_notifications;
    std::vector<AlarmPtr> m_alarms;
    QSet<QString> m_identities; // of these
    RunLoopTimer m_clockTimer;
    std::optional<Instant> m_nextTick; // what the timer is set to
    RunLoopTimer m_clockSet;
    RunLoopTimer m_wakeTimer;
    NotificationCenter::Observation m_wakeObservation;
};

} // namespace dorvane

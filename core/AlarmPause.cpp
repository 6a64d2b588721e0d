// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmPause.h"

#include "core/Clock.h"
#include "core/DateHelpers.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"

#include <algorithm>

namespace dorvane {

namespace {

bool isHeldBy(const std::optional<Instant>& until, const RunningAlarm& running) {
    return until && running.due < *until && comesAgain(*running.alarm);
}

} // namespace

bool comesAgain(const Alarm& alarm) {
    if (alarm.isTimeWithDate())
        return alarm.shouldUseEveryDay();
    return alarm.isRelative() ? alarm.shouldRepeat() : alarm.shouldUseForever();
}

std::optional<RunningAlarm> afterPause(const RunningAlarm& running,
                                       const std::optional<Instant>& until) {
    if (!isHeldBy(until, running))
        return running;
    if (*until == untilResumed)
        return std::nullopt;
    RunningAlarm after{running.alarm->storedCopy(), running.due};
    snoozeUntil(*after.alarm, after.due);
    passPause(after, until, *until);
    return after;
}

void passPause(RunningAlarm& running, const std::optional<Instant>& until, Instant now) {
    if (isHeldBy(until, running) &&
        moveOnPast(*running.alarm, localDateTimeOf(std::min(*until, now))))
        running.due = running.alarm->due(now).value_or(running.due);
}

QString pauseText(const std::optional<Instant>& until, const QDateTime& now,
                  const QLocale& territory) {
    if (!until)
        return {};
    if (*until == untilResumed)
        return QStringLiteral("paused");
    const QDateTime end = localDateTimeOf(*until);
    const QString date = dateTimeString(end, now, territory);
    const bool isDay = end.time() == end.date().startOfDay().time();
    return QStringLiteral("paused until ") + (isDay ? date.section(u',', 0, 0) : date);
}

AlarmPause::AlarmPause(RunLoop& runLoop, NotificationCenter& notifications, Clock& clock)
    : m_runLoop(runLoop), m_clock(clock) {
    m_clockSet = m_runLoop.whenClockIsSet([this] {
        if (m_until)
            update();
    });
    m_alarmsObservation = notifications.addObserver(
        alarmsDidChangeNotification, [this](const void*) { hold(); }, &clock);
}

AlarmPause::~AlarmPause() = default;

std::optional<Instant> AlarmPause::until() const {
    return m_until && instantNow(m_runLoop) < *m_until ? m_until : std::nullopt;
}

void AlarmPause::pauseUntil(const std::optional<Instant>& until) {
    if (until == m_until)
        return;
    m_until = until;
    update();
}

// At the pause's end, and wherever it may have come or gone with the time.
void AlarmPause::update() {
    m_end.cancel();
    const auto end = until();
    if (!end)
        release();
    else if (*end != untilResumed)
        m_end = m_runLoop.scheduleAt(
            localDateTimeOf(*end), [this] { update(); }, RunLoopMode::Common);
    m_clock.alarmDidChange(); // which has them held
}

void AlarmPause::hold() {
    const auto end = until();
    if (!end)
        return;
    for (const AlarmPtr& alarm : m_clock.allAlarms())
        if (const auto held = comesAgain(*alarm) ? end : std::nullopt; alarm->heldUntil() != held)
            alarm->setHeldUntil(held);
}

// What was due from the pause's end on rings, however late the machine woke.
void AlarmPause::release() {
    const Instant now = instantNow(m_runLoop);
    for (const AlarmPtr& alarm : m_clock.allAlarms()) {
        if (alarm->isHeld(now))
            static_cast<void>(
                moveOnPast(*alarm, localDateTimeOf(std::min(*alarm->heldUntil(), now))));
        if (alarm->heldUntil())
            alarm->setHeldUntil({});
    }
}

} // namespace dorvane

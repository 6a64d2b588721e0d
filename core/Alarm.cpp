// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Alarm.h"

#include "core/AlarmContext.h"
#include "core/AlarmDelegate.h"
#include "core/WholeSecond.h"
#include "platform/RunLoop.h"

#include <algorithm>

namespace dorvane {

namespace {

using std::chrono::duration_cast;
using std::chrono::floor;
using std::chrono::minutes;
using std::chrono::seconds;

// Keeps sums of what a stored alarm may hold inside the calendar: 200 years of minutes.
constexpr qint64 mostMinutes = 200LL * 366 * 24 * 60;

minutes boundedMinutes(qint64 count, qint64 minutesEach) {
    return minutes(std::clamp(count, -mostMinutes / minutesEach, mostMinutes / minutesEach) *
                   minutesEach);
}

std::optional<Instant> instantOrNone(const QDateTime& date) {
    return date.isValid() ? std::optional(instantOf(date)) : std::nullopt;
}

QDateTime dateOrInvalid(const std::optional<Instant>& instant) {
    return instant ? localDateTimeOf(*instant) : QDateTime();
}

} // namespace

Alarm::Alarm(const RunLoop& runLoop) : m_runLoop(runLoop) {}

Alarm::~Alarm() = default;

AlarmPtr Alarm::create(const RunLoop& runLoop) {
    return AlarmPtr(new Alarm(runLoop));
}

AlarmPtr Alarm::initWithTime(const RunLoop& runLoop, const QDateTime& time, const QString& title) {
    AlarmPtr alarm = create(runLoop);
    alarm->setTitle(title);
    alarm->setTime(time);
    return alarm;
}

AlarmPtr Alarm::copy() const {
    AlarmPtr other = create(m_runLoop);
    other->m_title = m_title;
    other->setTime(time());
    other->m_isTimeWithDate = m_isTimeWithDate;
    other->m_ringWithinUnits = m_ringWithinUnits;
    other->m_isMinuteUnits = m_isMinuteUnits;
    other->m_snoozeTime = m_snoozeTime;
    other->m_soundPath = m_soundPath;
    other->m_isPlaySound = m_isPlaySound;
    other->m_shouldFadeIn = m_shouldFadeIn;
    other->m_voiceName = m_voiceName;
    other->m_isSpeakAlarmName = m_isSpeakAlarmName;
    other->m_shouldUseEveryDay = m_shouldUseEveryDay;
    other->m_shouldRepeat = m_shouldRepeat;
    other->m_isExisInActiveAlarmList = m_isExisInActiveAlarmList;
    other->m_isDefaultAlarm = m_isDefaultAlarm;
    other->m_shouldUseForever = m_shouldUseForever;
    other->m_selRowNo = m_selRowNo;
    other->m_weekdays = m_weekdays;
    return other;
}

// All local clocks of today differ from UTC by whole minutes, so cutting an instant to the minute
// or the second cuts the local time alike. Snoozes and relative alarms count minutes that pass,
// not minutes of the clock face: the night on which clocks are set makes a timer neither shorter
// nor longer.
std::optional<Instant> Alarm::due(Instant now) const {
    std::optional<Instant> moment;
    if (m_isTimeWithDate) {
        if (m_time)
            moment = floor<minutes>(*m_time);
    } else if (m_selRowNo >= Weekly) {
        if (m_time)
            moment = floor<seconds>(*m_time);
    } else {
        moment = floor<seconds>(m_runTime.value_or(now)) +
                 boundedMinutes(m_ringWithinUnits, m_isMinuteUnits ? 1 : 60);
    }
    if (moment)
        *moment += boundedMinutes(qint64(m_snoozedMinutes), 1);
    return moment;
}

bool Alarm::countsFromNow() const {
    return !m_isTimeWithDate && m_selRowNo < Weekly && !m_runTime;
}

QDateTime Alarm::time() const {
    return dateOrInvalid(due(instantOf(m_runLoop.now())));
}

QDateTime Alarm::storedTime() const {
    return dateOrInvalid(m_time);
}

void Alarm::setTime(const QDateTime& time) {
    setDue(m_time, instantOrNone(time));
}

QDateTime Alarm::runTime() const {
    return m_runTime ? localDateTimeOf(*m_runTime) : m_runLoop.now();
}

QDateTime Alarm::storedRunTime() const {
    return dateOrInvalid(m_runTime);
}

void Alarm::setRunTime(const QDateTime& runTime) {
    m_snoozedMinutes = 0;
    setDue(m_runTime, instantOrNone(runTime));
}

void Alarm::snooze(qint32 minutes) {
    setSnoozedMinutes(m_snoozedMinutes + quint64(qint64(minutes)));
}

qint64 Alarm::secondsFromNow(Instant now) const {
    const std::optional<Instant> moment = due(now);
    return moment ? duration_cast<seconds>(*moment - now).count() : 0;
}

Alarm::MinutesAndSeconds Alarm::minutesFromNow(Instant now) const {
    const qint64 total = secondsFromNow(now);
    return {total / 60, total % 60};
}

int Alarm::minute() const {
    return time().time().minute();
}

void Alarm::tick(Instant now) {
    if (m_isTriggered || !m_delegate)
        return;
    const std::optional<Instant> moment = due(now);
    if (moment && moment != m_announcedDue && *moment - now < nearness + seconds(1)) {
        m_announcedDue = moment;
        m_delegate->alarmIsNear(shared_from_this());
    }
    if (secondsFromNow(now) <= 0)
        m_delegate->alarmTriggered(shared_from_this());
}

std::optional<Instant> Alarm::nextTick(Instant now) const {
    if (m_isTriggered)
        return std::nullopt;
    const Instant soon = nextWholeSecond(now);
    const std::optional<Instant> moment = due(now);
    if (!moment) // as if due now
        return soon;
    const Instant report = *moment - seconds(1);
    return std::max(soon, moment == m_announcedDue ? report : report - nearness);
}

std::weak_ordering Alarm::compare(const Alarm& other) const {
    const std::optional<Instant> theirs = other.due(instantOf(m_runLoop.now()));
    if (!m_time || !theirs)
        return std::weak_ordering::equivalent;
    return *m_time < *theirs   ? std::weak_ordering::less
           : *m_time > *theirs ? std::weak_ordering::greater
                               : std::weak_ordering::equivalent;
}

QString Alarm::description() const {
    const QString when =
        m_time ? storedTime().toOffsetFromUtc(storedTime().offsetFromUtc()).toString(Qt::ISODate)
               : QStringLiteral("(null)");
    return m_title.isNull() ? QStringLiteral("Alarm at %1 (no reminder)").arg(when)
                            : QStringLiteral("Alarm at %1 (\"%2\")").arg(when, m_title);
}

void Alarm::setContext(std::shared_ptr<AlarmContext> context) {
    m_context = std::move(context);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Alarm.h"

#include "core/AlarmContext.h"
#include "core/AlarmDelegate.h"
#include "core/LocalTime.h"
#include "core/WholeSecond.h"

#include <algorithm>

namespace dorvane {

namespace {

using std::chrono::duration_cast;
using std::chrono::floor;
using std::chrono::minutes;
using std::chrono::seconds;

// Keeps sums of what a stored alarm may hold inside the calendar: 200 years.
template<typename Unit>
Unit bounded(qint64 count) {
    constexpr qint64 most = std::chrono::duration_cast<Unit>(std::chrono::years(200)).count();
    return Unit(std::clamp(count, -most, most));
}

Instant hoursAfter(Instant start, qint64 count) {
    return instantOf(
        addingHours(localDateTimeOf(start), bounded<std::chrono::hours>(count).count()));
}

std::optional<Instant> instantOrNone(const QDateTime& date) {
    return date.isValid() ? std::optional(instantOf(date)) : std::nullopt;
}

QDateTime dateOrInvalid(const std::optional<Instant>& instant) {
    return instant ? localDateTimeOf(*instant) : QDateTime();
}

} // namespace

Alarm::Alarm() = default;

Alarm::~Alarm() = default;

AlarmPtr Alarm::create() {
    return AlarmPtr(new Alarm);
}

AlarmPtr Alarm::initWithTime(const QDateTime& time, const QString& title) {
    AlarmPtr alarm = create();
    alarm->setTitle(title);
    alarm->setTime(time);
    return alarm;
}

AlarmPtr Alarm::copy(Instant now) const {
    AlarmPtr other = create();
    other->m_stored = m_stored;
    other->setTimeWishedAt(time(now), m_stored.wishedTime);
    other->setRunTime({});
    return other;
}

AlarmPtr Alarm::storedCopy() const {
    AlarmPtr other = create();
    other->m_stored = m_stored;
    other->countHours();
    return other;
}

// All local clocks of today differ from UTC by whole minutes, so cutting an instant to the minute
// or the second cuts the local time alike. Snoozes and relative alarms in minutes count minutes
// that pass, so that no night makes a timer shorter or longer; hours are hours of the clock face.
std::optional<Instant> Alarm::due(Instant now) const {
    std::optional<Instant> moment;
    if (m_stored.isTimeWithDate) {
        if (m_stored.time)
            moment = floor<minutes>(*m_stored.time);
    } else if (m_stored.selRowNo >= Weekly) {
        if (m_stored.time)
            moment = floor<seconds>(*m_stored.time);
    } else {
        const Instant start = floor<seconds>(m_stored.runTime.value_or(now));
        if (m_stored.isMinuteUnits)
            moment = start + bounded<minutes>(m_stored.ringWithinUnits);
        else
            moment = m_hoursLater ? m_hoursLater : hoursAfter(start, m_stored.ringWithinUnits);
    }
    if (moment)
        *moment += bounded<minutes>(qint64(m_snoozedMinutes));
    return moment;
}

bool Alarm::countsFromNow() const {
    return isRelative() && !m_stored.runTime;
}

QDateTime Alarm::time(Instant now) const {
    return dateOrInvalid(due(now));
}

QDateTime Alarm::storedTime() const {
    return dateOrInvalid(m_stored.time);
}

void Alarm::setTime(const QDateTime& time) {
    m_stored.wishedTime = {};
    setDue(m_stored.time, instantOrNone(time));
}

void Alarm::setTimeWishedAt(const QDateTime& time, QTime wished) {
    const QTime wholeMinute(wished.hour(), wished.minute());
    setTime(time);
    if (time.isValid() && wholeMinute.isValid() && time.time() != wholeMinute)
        m_stored.wishedTime = wholeMinute;
}

QTime Alarm::timeOfDay(Instant now) const {
    return m_stored.wishedTime.isValid() ? m_stored.wishedTime
                                         : time(now).addSecs(-60 * qint64(m_snoozedMinutes)).time();
}

QDateTime Alarm::runTime(Instant now) const {
    return localDateTimeOf(m_stored.runTime.value_or(now));
}

QDateTime Alarm::storedRunTime() const {
    return dateOrInvalid(m_stored.runTime);
}

void Alarm::setRunTime(const QDateTime& runTime) {
    m_snoozedMinutes = 0;
    m_stored.runTime = instantOrNone(runTime);
    countHours();
}

bool Alarm::replaceSound(const QHash<QString, QString>& moved) {
    const auto found = moved.constFind(m_stored.soundPath);
    if (found == moved.cend())
        return false;
    m_stored.soundPath = *found;
    return true;
}

void Alarm::setRingWithinUnits(qint64 units) {
    m_stored.ringWithinUnits = units;
    countHours();
}

void Alarm::setIsMinuteUnits(bool on) {
    m_stored.isMinuteUnits = on;
    countHours();
}

// Once for each start: a look must cost no calendar work, and another zone must move nothing.
void Alarm::countHours() {
    setDue(
        m_hoursLater,
        m_stored.runTime && !m_stored.isMinuteUnits && m_stored.ringWithinUnits != 0
            ? std::optional(hoursAfter(floor<seconds>(*m_stored.runTime), m_stored.ringWithinUnits))
            : std::nullopt);
}

void Alarm::forgetDue() {
    setIsTimeWithDate(true);
    setSelRowNo(Dated);
    setTime({});
}

void Alarm::snooze(qint32 minutes) {
    setSnoozedMinutes(m_snoozedMinutes + quint64(qint64(minutes)));
}

bool Alarm::isHeld(Instant now) const {
    if (!m_heldUntil || m_isTriggered)
        return false;
    const std::optional<Instant> moment = due(now);
    return moment && *moment < *m_heldUntil;
}

qint64 Alarm::secondsFromNow(Instant now) const {
    const std::optional<Instant> moment = due(now);
    return moment ? duration_cast<seconds>(*moment - now).count() : 0;
}

Alarm::MinutesAndSeconds Alarm::minutesFromNow(Instant now) const {
    const qint64 total = secondsFromNow(now);
    return {total / 60, total % 60};
}

int Alarm::minute(Instant now) const {
    return time(now).time().minute();
}

void Alarm::tick(Instant now) {
    if (m_isTriggered || !m_delegate || isHeld(now))
        return;
    const std::optional<Instant> moment = due(now);
    if (!moment)
        return;
    if (moment != m_announcedDue && *moment - now < nearness + seconds(1)) {
        m_announcedDue = moment;
        m_delegate->alarmIsNear(shared_from_this());
    }
    if (secondsFromNow(now) <= 0)
        m_delegate->alarmTriggered(shared_from_this());
}

std::optional<Instant> Alarm::nextTick(Instant now) const {
    if (m_isTriggered || isHeld(now))
        return std::nullopt;
    const Instant soon = nextWholeSecond(now);
    const std::optional<Instant> moment = due(now);
    if (!moment)
        return std::nullopt;
    const Instant report = *moment - seconds(1);
    return std::max(soon, moment == m_announcedDue ? report : report - nearness);
}

std::weak_ordering Alarm::compare(const Alarm& other, Instant now) const {
    const std::optional<Instant> theirs = other.due(now);
    if (!m_stored.time || !theirs)
        return std::weak_ordering::equivalent;
    return *m_stored.time < *theirs   ? std::weak_ordering::less
           : *m_stored.time > *theirs ? std::weak_ordering::greater
                                      : std::weak_ordering::equivalent;
}

QString Alarm::description() const {
    const QString when =
        m_stored.time
            ? storedTime().toOffsetFromUtc(storedTime().offsetFromUtc()).toString(Qt::ISODate)
            : QStringLiteral("(null)");
    return m_stored.title.isNull()
               ? QStringLiteral("Alarm at %1 (no reminder)").arg(when)
               : QStringLiteral("Alarm at %1 (\"%2\")").arg(when, m_stored.title);
}

void Alarm::setContext(std::shared_ptr<AlarmContext> context) {
    m_context = std::move(context);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimePicker.h"

#include "core/DateHelpers.h"
#include "core/WrittenTime.h"

#include <algorithm>

namespace dorvane {

namespace {

constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 60 * secondsPerMinute;

QTime wholeMinute(QTime time) {
    return QTime(time.hour(), time.minute());
}

} // namespace

TimePicker::TimePicker(QWidget* parent) : TypedField(parent) {
    setTwelveHours(usesTwelveHourClock(QLocale::system()));
}

void TimePicker::setTwelveHours(bool isTwelveHours) {
    m_isTwelveHours = isTwelveHours;
    updateGeometry();
    settleOnWanted();
}

QTime TimePicker::chosenTime() const {
    return m_earliest ? std::max(m_wanted, *m_earliest) : m_wanted;
}

void TimePicker::setChosenTime(QTime time) {
    m_wanted = wholeMinute(time);
    settleOnWanted();
}

void TimePicker::setEarliestOn(QDate date, const std::optional<QDateTime>& earliest) {
    std::optional<QTime> bound;
    if (earliest && earliest->date() == date)
        bound = wholeMinute(earliest->time());
    if (bound == m_earliest)
        return;
    m_earliest = bound;
    boundChanged();
}

TypedField::Reading TimePicker::read(const QString& text) {
    const TimeReading reading = timeRead(text, m_shown, m_isTwelveHours);
    m_wanted = reading.time.value_or(m_wanted);
    if (reading.time)
        return Reading::Read;
    return reading.canBecomeTime ? Reading::Beginning : Reading::Unreadable;
}

QString TimePicker::show() {
    m_shown = chosenTime();
    return shown();
}

QString TimePicker::shown() const {
    return timeShown(m_shown, m_isTwelveHours);
}

QString TimePicker::widestText() const {
    return timeShown(QTime(20, 0), m_isTwelveHours);
}

QString TimePicker::jumpRemark() const {
    return m_wanted < m_shown ? timeShown(m_wanted, m_isTwelveHours) + QStringLiteral(" has passed")
                              : QString();
}

QString TimePicker::unreadableRemark() const {
    return QStringLiteral("Not a time");
}

TypedText TimePicker::typed(const TypedText& field, QChar character) const {
    return timeTyped(field, character);
}

void TimePicker::step(int steps, TextPart part) {
    const int unit = shown()[part.start].isLetter() ? 12 * secondsPerHour
                     : part.start > 0               ? secondsPerMinute
                                                    : secondsPerHour;
    setChosenTime(chosenTime().addSecs(steps * unit));
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DatePicker.h"

#include "core/WrittenDate.h"

#include <algorithm>

namespace dorvane {

DatePicker::DatePicker(QWidget* parent) : TypedField(parent), m_territory(QLocale::system()) {}

void DatePicker::setTerritory(const QLocale& territory) {
    m_territory = territory;
    updateGeometry();
    settleOnWanted();
}

QDate DatePicker::chosenDate() const {
    return m_earliest ? std::max(m_wanted, *m_earliest) : m_wanted;
}

void DatePicker::setChosenDate(QDate date) {
    m_wanted = date;
    m_written.clear();
    settleOnWanted();
}

void DatePicker::setTimeOfDay(QTime time) {
    m_time = time;
    if (m_written.isEmpty())
        return;
    const auto date = dateRead(m_written, m_territory, m_writtenAt, time).date;
    if (!date || date == m_wanted)
        return;
    m_wanted = *date;
    boundChanged();
}

void DatePicker::setEarliest(std::optional<QDate> earliest) {
    if (earliest == m_earliest)
        return;
    m_earliest = earliest;
    boundChanged();
}

TypedField::Reading DatePicker::read(const QString& text) {
    m_writtenAt = m_now();
    const DateReading reading = dateRead(text, m_territory, m_writtenAt, m_time);
    m_written.clear();
    if (!reading.date)
        return reading.canBecomeDate ? Reading::Beginning : Reading::Unreadable;
    m_wanted = *reading.date;
    m_written = text;
    return Reading::Read;
}

QString DatePicker::show() {
    m_shown = chosenDate();
    return shown();
}

QString DatePicker::shown() const {
    return dateShown(m_shown, m_territory);
}

QString DatePicker::widestText() const {
    return dateShown(QDate(2020, 12, 20), m_territory);
}

QString DatePicker::jumpRemark() const {
    return m_wanted < m_shown ? QStringLiteral("That day has passed") : QString();
}

QString DatePicker::unreadableRemark() const {
    return QStringLiteral("Not a date");
}

TypedText DatePicker::typed(const TypedText& field, QChar character) const {
    return dateTyped(field, character, dateOrder(m_territory));
}

void DatePicker::step(int steps, TextPart part) {
    const QChar unit = dateOrder(m_territory)[std::min<qsizetype>(part.index, 2)];
    const QDate date = chosenDate();
    setChosenDate(unit == u'y'   ? date.addYears(steps)
                  : unit == u'M' ? date.addMonths(steps)
                                 : date.addDays(steps));
}

} // namespace dorvane

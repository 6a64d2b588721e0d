// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/MonthCalendar.h"

#include "core/DateHelpers.h"

#include <QPainter>
#include <QTextCharFormat>
#include <QToolButton>

namespace dorvane {

namespace {

constexpr float ofAnotherMonth = 0.6F; // the strength of a day's number
constexpr float unavailable = 0.3F;

} // namespace

MonthCalendar::MonthCalendar(QWidget* parent)
    : QCalendarWidget(parent)
    , m_days(findChild<QWidget*>(QStringLiteral("qt_calendar_calendarview"))) {
    setLocale(dateLanguage());
    setFirstDayOfWeek(QLocale::system().firstDayOfWeek());
    setVerticalHeaderFormat(NoVerticalHeader);
    // In the colour of the bar's text, instead of the style's icons.
    const auto setArrow = [this](const QString& name, Qt::ArrowType arrow) {
        if (const auto button = findChild<QToolButton*>(name))
            button->setArrowType(arrow);
    };
    setArrow(QStringLiteral("qt_calendar_prevmonth"), Qt::LeftArrow);
    setArrow(QStringLiteral("qt_calendar_nextmonth"), Qt::RightArrow);
    // The red of weekends would stand out more than the day that is selected, and an alarm has no
    // weekends.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        setWeekdayTextFormat(day, QTextCharFormat());
}

void MonthCalendar::paintCell(QPainter* painter, const QRect& cell, QDate date) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    QColor text = palette().color(QPalette::Text);
    if (date < minimumDate() || date > maximumDate())
        text.setAlphaF(unavailable);
    else if (date.month() != monthShown())
        text.setAlphaF(ofAnotherMonth);
    if (date == selectedDate()) {
        const QRectF mark = QRectF(cell).adjusted(1.5, 1.5, -1.5, -1.5);
        text = palette().color(QPalette::HighlightedText);
        painter->setBrush(palette().color(QPalette::Highlight));
        painter->setPen(Qt::NoPen);
        painter->drawRoundedRect(mark, 4, 4);
        if (m_days && m_days->hasFocus()) {
            painter->setBrush(Qt::NoBrush);
            painter->setPen(text);
            painter->drawRoundedRect(mark.adjusted(2, 2, -2, -2), 3, 3);
        }
    }
    painter->setPen(text);
    painter->drawText(cell, Qt::AlignCenter, QString::number(date.day()));
    painter->restore();
}

} // namespace dorvane

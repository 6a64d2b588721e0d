// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalDateWindow.h"

#include "editor/DialogButtons.h"
#include "ui_GraphicalDateWindow.h"

#include <QTextCharFormat>
#include <QToolButton>

namespace dorvane {

namespace {

// In the colour of the bar's text, instead of the style's icons.
void setPlainArrows(const QCalendarWidget& calendar) {
    const auto setArrow = [&](const QString& name, Qt::ArrowType arrow) {
        if (const auto button = calendar.findChild<QToolButton*>(name))
            button->setArrowType(arrow);
    };
    setArrow(QStringLiteral("qt_calendar_prevmonth"), Qt::LeftArrow);
    setArrow(QStringLiteral("qt_calendar_nextmonth"), Qt::RightArrow);
}

} // namespace

GraphicalDateWindow::GraphicalDateWindow(QWidget* parent)
    : QDialog(parent), m_controls(std::make_unique<Ui::GraphicalDateWindow>()) {
    m_controls->setupUi(this);
    addAcceptAndCancel(*m_controls->buttonBox, QStringLiteral("&Set Date and Time"));
    QCalendarWidget* calendar = m_controls->graphicalDatePicker;
    setPlainArrows(*calendar);
    // The red of weekends would stand out more than the day that is selected, and an alarm has no
    // weekends.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        calendar->setWeekdayTextFormat(day, QTextCharFormat());
    connect(calendar, &QCalendarWidget::selectionChanged, this, [this] { boundTime(); });
    // Return and a double click on a day.
    connect(calendar, &QCalendarWidget::activated, this, [this] { accept(); });
}

GraphicalDateWindow::~GraphicalDateWindow() = default;

void GraphicalDateWindow::run(const QDateTime& moment, const QDateTime& earliest) {
    m_earliest = earliest;
    m_controls->graphicalDatePicker->setMinimumDate(earliest.date());
    m_controls->graphicalDatePicker->setSelectedDate(moment.date());
    boundTime();
    m_controls->graphicalTimePicker->setTime(moment.time());
    m_controls->graphicalDatePicker->setFocus();
    open();
}

QDate GraphicalDateWindow::date() const {
    return m_controls->graphicalDatePicker->selectedDate();
}

QTime GraphicalDateWindow::time() const {
    return m_controls->graphicalTimePicker->time();
}

void GraphicalDateWindow::boundTime() {
    m_controls->graphicalTimePicker->setEarliestOn(date(), m_earliest);
}

} // namespace dorvane

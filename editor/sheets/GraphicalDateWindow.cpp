// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalDateWindow.h"

#include "core/DateHelpers.h"
#include "core/WrittenTime.h"
#include "editor/DialogButtons.h"
#include "ui_GraphicalDateWindow.h"

namespace dorvane {

GraphicalDateWindow::GraphicalDateWindow(QWidget* parent)
    : QDialog(parent), m_controls(std::make_unique<Ui::GraphicalDateWindow>()) {
    m_controls->setupUi(this);
    m_setButton = addAcceptAndCancel(*m_controls->buttonBox, QStringLiteral("&Set Date and Time"));
    QCalendarWidget* calendar = m_controls->graphicalDatePicker;
    connect(calendar, &QCalendarWidget::selectionChanged, this, [this] {
        boundTime();
        showMoment();
    });
    // Return and a double click on a day.
    connect(calendar, &QCalendarWidget::activated, m_setButton, &QPushButton::click);
    connect(m_controls->graphicalTimePicker, &GraphicalClock::changed, this,
            &GraphicalDateWindow::showMoment);
}

GraphicalDateWindow::~GraphicalDateWindow() = default;

void GraphicalDateWindow::run(const QDateTime& moment, const QDateTime& earliest) {
    m_earliest = earliest;
    m_controls->graphicalDatePicker->setMinimumDate(earliest.date());
    m_controls->graphicalDatePicker->setSelectedDate(moment.date());
    boundTime();
    m_controls->graphicalTimePicker->setTime(moment.time());
    showMoment();
    m_controls->graphicalDatePicker->setFocus();
    open();
}

QDate GraphicalDateWindow::date() const {
    return m_controls->graphicalDatePicker->selectedDate();
}

QTime GraphicalDateWindow::time() const {
    return m_controls->graphicalTimePicker->time();
}

// In words, wherever the calendar has been turned to.
void GraphicalDateWindow::showMoment() {
    const bool isReadable = m_controls->graphicalTimePicker->isReadable();
    m_setButton->setEnabled(isReadable);
    const QString day = dateLanguage().toString(date(), QStringLiteral("dddd, d MMMM yyyy"));
    m_controls->chosenMoment->setText(
        isReadable ? day + QStringLiteral(" at ") +
                         timeShown(time(), usesTwelveHourClock(QLocale::system()))
                   : day);
}

void GraphicalDateWindow::boundTime() {
    m_controls->graphicalTimePicker->setEarliestOn(date(), m_earliest);
}

} // namespace dorvane

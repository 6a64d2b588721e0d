// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimeChoice.h"

#include "core/AlarmBuilding.h"
#include "core/AlarmForm.h"
#include "editor/sheets/GraphicalDateWindow.h"
#include "editor/sheets/GraphicalTimeWindow.h"
#include "platform/RunLoop.h"
#include "ui_AlarmSetController.h"

#include <algorithm>

namespace dorvane {

TimeChoice::TimeChoice(const RunLoop& runLoop, Ui::AlarmSetController& controls, QWidget* window)
    : QObject(window)
    , m_runLoop(runLoop)
    , m_controls(controls)
    , m_graphicalDateWindow(new GraphicalDateWindow(window))
    , m_graphicalTimeWindow(new GraphicalTimeWindow(window)) {
    connect(controls.atDatePicker, &DatePicker::chosenDateChanged, this, [this] {
        m_controls.atTimePicker->setEarliestOn(m_controls.atDatePicker->chosenDate(),
                                               m_datedEarliest);
        Q_EMIT changed();
    });
    connect(controls.atDatePicker, &DatePicker::remarkChanged, this, &TimeChoice::showRemarks);
    for (TimePicker* picker : {controls.atTimePicker, controls.atAlarmTimePicker}) {
        connect(picker, &TimePicker::chosenTimeChanged, this, &TimeChoice::changed);
        connect(picker, &TimePicker::remarkChanged, this, &TimeChoice::showRemarks);
    }
    wireSheets();
}

void TimeChoice::wireSheets() {
    connect(m_controls.calendarButton, &QPushButton::clicked, this,
            &TimeChoice::calendarButtonPushed);
    connect(m_controls.alarmButton, &QPushButton::clicked, this, &TimeChoice::alarmButtonPushed);
    connect(m_graphicalDateWindow, &QDialog::accepted, this, &TimeChoice::graphicalDateSelected);
    connect(m_graphicalTimeWindow, &QDialog::accepted, this, &TimeChoice::graphicalTimeSelected);
}

void TimeChoice::setEarliest(const std::optional<QDateTime>& earliest) {
    m_datedEarliest = m_weeklyEarliest = earliest;
}

void TimeChoice::fit(AlarmForm& form, const QDateTime& now) {
    std::optional<QDate> earliestDate;
    if (m_datedEarliest) {
        earliestDate = m_datedEarliest->date();
        form.atTimePickerDate = std::max(form.atTimePickerDate, *earliestDate);
        form.atDatePicker = std::max(form.atDatePicker, *earliestDate);
    }
    if (!form.weekdays.isEmpty())
        m_weeklyEarliest.reset();
    m_atTimePickerDate = form.atTimePickerDate;
    m_controls.atDatePicker->setEarliest(earliestDate);
    m_controls.atTimePicker->setEarliestOn(form.atDatePicker, m_datedEarliest);
    m_controls.atAlarmTimePicker->setEarliestOn(now.date(), m_weeklyEarliest);
}

void TimeChoice::daysTicked(bool anyDay, const QDateTime& now) {
    m_weeklyEarliest.reset();
    if (!anyDay)
        m_weeklyEarliest = now.addSecs(secondsToEarliest);
    m_controls.atAlarmTimePicker->setEarliestOn(now.date(), m_weeklyEarliest);
}

bool TimeChoice::isReadable(Alarm::Kind row) const {
    return row == Alarm::Relative ||
           (row == Alarm::Dated ? m_controls.atTimePicker->isReadable()
                                : m_controls.atAlarmTimePicker->isReadable());
}

bool TimeChoice::takeUnseenJump(Alarm::Kind row) {
    if (row == Alarm::Relative)
        return false;
    if (row == Alarm::Weekly)
        return m_controls.atAlarmTimePicker->takeUnseenJump();
    const bool hasDateJumped = m_controls.atDatePicker->takeUnseenJump();
    return m_controls.atTimePicker->takeUnseenJump() || hasDateJumped;
}

void TimeChoice::showRemarks() {
    const QString& date = m_controls.atDatePicker->remark();
    m_controls.atTimeRemark->setText(date.isEmpty() ? m_controls.atTimePicker->remark() : date);
    m_controls.atAlarmTimeRemark->setText(m_controls.atAlarmTimePicker->remark());
}

void TimeChoice::calendarButtonPushed() {
    m_graphicalDateWindow->run(fullDateWithTimeFrom(m_controls.atTimePicker->chosenTime(),
                                                    m_controls.atDatePicker->chosenDate()),
                               m_runLoop.now().addSecs(secondsToEarliest));
}

void TimeChoice::graphicalDateSelected() {
    m_atTimePickerDate = m_graphicalDateWindow->date();
    m_controls.atDatePicker->setDate(m_graphicalDateWindow->date());
    m_controls.atTimePicker->setChosenTime(m_graphicalDateWindow->time());
    Q_EMIT changed();
}

void TimeChoice::alarmButtonPushed() {
    m_graphicalTimeWindow->run(m_controls.atAlarmTimePicker->chosenTime());
}

void TimeChoice::graphicalTimeSelected() {
    m_controls.atAlarmTimePicker->setChosenTime(m_graphicalTimeWindow->time());
    Q_EMIT changed();
}

} // namespace dorvane

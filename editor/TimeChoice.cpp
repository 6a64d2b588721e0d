// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimeChoice.h"

#include "core/AlarmBuilding.h"
#include "core/AlarmForm.h"
#include "core/LocalTime.h"
#include "editor/sheets/GraphicalDateWindow.h"
#include "editor/sheets/GraphicalTimeWindow.h"
#include "platform/RunLoop.h"
#include "ui_AlarmSetController.h"

namespace dorvane {

TimeChoice::TimeChoice(const RunLoop& runLoop, Ui::AlarmSetController& controls, QWidget* window)
    : QObject(window)
    , m_runLoop(runLoop)
    , m_controls(controls)
    , m_graphicalDateWindow(new GraphicalDateWindow(window))
    , m_graphicalTimeWindow(new GraphicalTimeWindow(window)) {
    controls.atDatePicker->setNow([&runLoop] { return runLoop.now(); });
    connect(controls.atDatePicker, &DatePicker::chosenChanged, this, [this] {
        boundTime();
        Q_EMIT changed();
    });
    connect(controls.atTimePicker, &TimePicker::chosenChanged, this, [this] {
        m_controls.atDatePicker->setTimeOfDay(m_controls.atTimePicker->wantedTime());
        if (m_isEveryDay)
            boundDate(m_runLoop.now());
        Q_EMIT changed();
    });
    connect(controls.atAlarmTimePicker, &TimePicker::chosenChanged, this, &TimeChoice::changed);
    for (TypedField* field : std::initializer_list<TypedField*>{
             controls.atDatePicker, controls.atTimePicker, controls.atAlarmTimePicker})
        connect(field, &TypedField::remarkChanged, this, &TimeChoice::showRemarks);
    // Room for what a twelve-hour clock says at its widest, which is not cut.
    const QString widest = QStringLiteral("12:00 AM has passed");
    controls.atTimeRemark->setMinimumWidth(
        controls.atTimeRemark->fontMetrics().horizontalAdvance(widest));
    wireSheets();
}

void TimeChoice::wireSheets() {
    connect(m_controls.calendarButton, &QPushButton::clicked, this,
            &TimeChoice::calendarButtonPushed);
    connect(m_controls.alarmButton, &QPushButton::clicked, this, &TimeChoice::alarmButtonPushed);
    connect(m_graphicalDateWindow, &QDialog::accepted, this, &TimeChoice::graphicalDateSelected);
    connect(m_graphicalTimeWindow, &QDialog::accepted, this, &TimeChoice::graphicalTimeSelected);
}

void TimeChoice::fit(AlarmForm& form, Origin origin, const QDateTime& now) {
    m_isDateBounded = origin != Origin::Edited;
    m_isWeeklyBounded = origin == Origin::New;
    if (origin == Origin::Picked &&
        fullDateWithTimeFrom(form.atTimePicker, form.atDatePicker, now) <= now)
        form.atDatePicker = nextMomentAt(form.atTimePicker, now).date();
}

void TimeChoice::ticksChanged(const AlarmForm& form, const QDateTime& now) {
    if (m_hasDays && form.weekdays.isEmpty())
        m_isWeeklyBounded = true;
    m_hasDays = !form.weekdays.isEmpty();
    m_isEveryDay = form.shouldUseEveryDay;
    DatePicker& date = *m_controls.atDatePicker;
    if (m_isEveryDay && !date.isReadable()) // nobody could correct it there
        date.setChosenDate(date.chosenDate());
    date.setTimeOfDay(m_controls.atTimePicker->wantedTime());
    boundDate(now);
    boundTime();
    m_controls.atAlarmTimePicker->setEarliestOn(
        now.date(), m_isWeeklyBounded && !m_hasDays ? std::optional(now.addSecs(secondsToEarliest))
                                                    : std::nullopt);
}

void TimeChoice::boundDate(const QDateTime& now) {
    const QDateTime earliest = now.addSecs(secondsToEarliest);
    std::optional<QDate> date;
    m_datedEarliest.reset();
    if (m_isEveryDay) {
        date = nextMomentAt(m_controls.atTimePicker->wantedTime(), now).date();
    } else if (m_isDateBounded) {
        date = earliest.date();
        m_datedEarliest = earliest;
    }
    m_controls.atDatePicker->setEarliest(date);
}

void TimeChoice::boundTime() {
    m_controls.atTimePicker->setEarliestOn(m_controls.atDatePicker->chosenDate(), m_datedEarliest);
}

QDateTime TimeChoice::chosen(Alarm::Kind row, const QDateTime& now) const {
    return row == Alarm::Weekly
               ? fullDateWithTimeFrom(m_controls.atAlarmTimePicker->chosenTime(), now.date(), now)
               : fullDateWithTimeFrom(m_controls.atTimePicker->chosenTime(),
                                      m_controls.atDatePicker->chosenDate(), now);
}

bool TimeChoice::renewBounds(Alarm::Kind row, const QDateTime& now) {
    const QDateTime before = chosen(row, now);
    m_isDateBounded = true;
    boundDate(now);
    boundTime();
    if (m_isWeeklyBounded && !m_hasDays)
        m_controls.atAlarmTimePicker->setEarliestOn(now.date(), now.addSecs(secondsToEarliest));
    const bool isBounded = row == Alarm::Weekly || (row == Alarm::Dated && !m_isEveryDay);
    return isBounded && chosen(row, now) != before;
}

bool TimeChoice::isReadable(Alarm::Kind row) const {
    switch (row) {
    case Alarm::Dated:
        return m_controls.atDatePicker->isReadable() && m_controls.atTimePicker->isReadable();
    case Alarm::Weekly:
        return m_controls.atAlarmTimePicker->isReadable();
    case Alarm::Relative:
        break;
    }
    return true;
}

bool TimeChoice::takeUnseenJump(Alarm::Kind row) {
    if (row == Alarm::Relative)
        return false;
    if (row == Alarm::Weekly)
        return m_controls.atAlarmTimePicker->takeUnseenJump();
    const bool hasDateJumped = m_controls.atDatePicker->takeUnseenJump();
    return (m_controls.atTimePicker->takeUnseenJump() || hasDateJumped) && !m_isEveryDay;
}

void TimeChoice::showRemarks() {
    QString dated = m_isEveryDay ? QString() : m_controls.atDatePicker->remark();
    if (dated.isEmpty())
        dated = m_controls.atTimePicker->remark();
    m_controls.atTimeRemark->setText(m_controls.atTimeRadio->isChecked() ? dated : QString());
    QString weekly = m_controls.atAlarmTimePicker->remark();
    if (weekly.isEmpty() && m_controls.atAlarmTimeRadio->isChecked() && !m_hasDays) {
        const QDateTime now = m_runLoop.now();
        weekly = chosen(Alarm::Weekly, now) > now ? QStringLiteral("Rings once, today")
                                                  : QStringLiteral("Rings once, tomorrow");
    }
    m_controls.atAlarmTimeRemark->setText(weekly);
}

void TimeChoice::calendarButtonPushed() {
    const QDateTime now = m_runLoop.now();
    m_graphicalDateWindow->run(chosen(Alarm::Dated, now), now.addSecs(secondsToEarliest));
}

void TimeChoice::graphicalDateSelected() {
    m_controls.atDatePicker->setChosenDate(m_graphicalDateWindow->date());
    boundTime();
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

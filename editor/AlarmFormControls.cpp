// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmFormControls.h"

#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "editor/FormEnabling.h"
#include "ui_AlarmSetController.h"

#include <algorithm>

namespace dorvane {

namespace {

constexpr int minutesItem = 0;
constexpr int hoursItem = 1;

} // namespace

AlarmFormControls::AlarmFormControls(Ui::AlarmSetController& controls)
    : m_controls(controls)
    , m_dayBoxes{controls.monCheck, controls.tueCheck, controls.wedCheck, controls.thuCheck,
                 controls.friCheck, controls.satCheck, controls.sunCheck} {
    controls.alarmTimeRadio->setId(controls.inTimeRadio, Alarm::Relative);
    controls.alarmTimeRadio->setId(controls.atTimeRadio, Alarm::Dated);
    controls.alarmTimeRadio->setId(controls.atAlarmTimeRadio, Alarm::Weekly);
    fadePickersWhenDisabled();
}

// A picker that cannot be used is drawn at half its strength.
void AlarmFormControls::fadePickersWhenDisabled() {
    for (QWidget* picker : std::initializer_list<QWidget*>{
             m_controls.atTimePicker, m_controls.atDatePicker, m_controls.atAlarmTimePicker}) {
        QPalette palette;
        QColor half = picker->palette().color(QPalette::Active, QPalette::Text);
        half.setAlphaF(0.5F);
        palette.setColor(QPalette::Disabled, QPalette::Text, half);
        picker->setPalette(palette);
    }
}

WeekdaySet AlarmFormControls::checkedDays() const {
    WeekdaySet days;
    for (std::size_t i = 0; i < m_dayBoxes.size(); ++i)
        days.set(everyWeekday[i], m_dayBoxes[i]->isChecked());
    return days;
}

// A length that the pop-up does not have, from elsewhere, is offered while its alarm is shown. What
// is no length gives way to the first one.
void AlarmFormControls::showSnooze(qint64 minutes) {
    QComboBox& popUp = *m_controls.snoozeTimePopUp;
    while (popUp.count() > int(snoozeLengths.size()))
        popUp.removeItem(popUp.count() - 1);
    const QString length = QString::number(minutes);
    if (popUp.findText(length) < 0 && minutes > 0 && minutes <= longestInterval(true))
        popUp.addItem(length);
    popUp.setCurrentIndex(std::max(0, popUp.findText(length)));
}

void AlarmFormControls::readInto(AlarmForm& form) const {
    form.title = m_controls.titleBox->title();
    form.row = Alarm::Kind(m_controls.alarmTimeRadio->checkedId());
    form.interval = m_controls.inTimeField->text();
    form.isMinuteUnits = m_controls.inTimeTypePopUp->currentText() == QLatin1String("minutes");
    form.shouldRepeat = m_controls.repeatCheck->isChecked();
    form.atTimePicker = m_controls.atTimePicker->chosenTime();
    form.atDatePicker = m_controls.atDatePicker->chosenDate();
    form.shouldUseEveryDay = m_controls.everyDayCheck->isChecked();
    form.atAlarmTimePicker = m_controls.atAlarmTimePicker->chosenTime();
    form.weekdays = checkedDays();
    form.shouldUseForever = m_controls.foreverCheck->isChecked();
    form.snoozeTime = m_controls.snoozeTimePopUp->currentText().toLongLong();
    form.isPlaySound = m_controls.playSoundCheck->isChecked();
    form.shouldFadeIn = m_controls.shouldFadeInCheck->isChecked();
    form.ringsUntilAnswered = m_controls.untilAnsweredCheck->isChecked();
    form.startsSoftly = m_controls.softlyCheck->isChecked();
    form.isSpeakAlarmName = m_controls.speakNameCheck->isChecked();
}

void AlarmFormControls::show(const AlarmForm& form) {
    m_controls.titleBox->setTitle(form.title);
    m_controls.alarmTimeRadio->button(int(form.row))->setChecked(true);
    m_controls.inTimeField->setText(form.interval);
    m_controls.inTimeTypePopUp->setCurrentIndex(form.isMinuteUnits ? minutesItem : hoursItem);
    m_controls.repeatCheck->setChecked(form.shouldRepeat);
    m_controls.atTimePicker->setChosenTime(form.atTimePicker);
    m_controls.atDatePicker->setChosenDate(form.atDatePicker);
    m_controls.everyDayCheck->setChecked(form.shouldUseEveryDay);
    m_controls.atAlarmTimePicker->setChosenTime(form.atAlarmTimePicker);
    for (std::size_t i = 0; i < m_dayBoxes.size(); ++i)
        m_dayBoxes[i]->setChecked(form.weekdays.contains(everyWeekday[i]));
    m_controls.foreverCheck->setChecked(form.shouldUseForever);
    showSnooze(form.snoozeTime);
    m_controls.playSoundCheck->setChecked(form.isPlaySound);
    m_controls.shouldFadeInCheck->setChecked(form.shouldFadeIn);
    m_controls.untilAnsweredCheck->setChecked(form.ringsUntilAnswered);
    m_controls.softlyCheck->setChecked(form.startsSoftly);
    m_controls.speakNameCheck->setChecked(form.isSpeakAlarmName);
}

void AlarmFormControls::apply(const FormEnabling& enabling) {
    m_controls.inTimeField->setEnabled(enabling.interval);
    m_controls.inTimeTypePopUp->setEnabled(enabling.interval);
    m_controls.repeatCheck->setEnabled(enabling.interval);
    m_controls.atTimePicker->setEnabled(enabling.atTimePicker);
    m_controls.atDatePicker->setEnabled(enabling.date);
    m_controls.calendarButton->setEnabled(enabling.date);
    m_controls.atAlarmTimePicker->setEnabled(enabling.weekly);
    m_controls.alarmButton->setEnabled(enabling.weekly);
    for (QCheckBox* box : m_dayBoxes)
        box->setEnabled(enabling.weekly);
    m_controls.foreverCheck->setEnabled(enabling.foreverCheck);
    m_controls.selectSoundButton->setEnabled(enabling.selectSoundButton);
    m_controls.playButton->setEnabled(enabling.playButton);
    m_controls.Volume->setEnabled(enabling.playButton);
    for (QCheckBox* box :
         {m_controls.shouldFadeInCheck, m_controls.untilAnsweredCheck, m_controls.softlyCheck})
        box->setEnabled(enabling.shouldFadeInCheck);
    m_controls.voiceNamePopUp->setEnabled(enabling.voiceNamePopUp);
}

} // namespace dorvane

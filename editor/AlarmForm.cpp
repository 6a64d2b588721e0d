// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmForm.h"

#include <QFileInfo>

#include <algorithm>

namespace dorvane {

namespace {

// A damaged record may hold any number for its kind; those above count as weekday alarms in
// Alarm::time() too.
Alarm::Kind rowOf(const Alarm& alarm) {
    return Alarm::Kind(std::clamp<qint64>(alarm.selRowNo(), Alarm::Relative, Alarm::Weekly));
}

QTime wholeMinute(QTime time) {
    return QTime(time.hour(), time.minute());
}

void fillWhen(AlarmForm& form, const Alarm& alarm) {
    const QDateTime time = alarm.time();
    switch (form.row) {
    case Alarm::Dated:
        if (time.isValid()) {
            form.atTimePicker = wholeMinute(time.time());
            form.atTimePickerDate = form.atDatePicker = time.date();
        }
        break;
    case Alarm::Weekly:
        if (time.isValid())
            form.atAlarmTimePicker = wholeMinute(time.time());
        form.weekdays = alarm.weekdays();
        form.shouldUseForever = alarm.shouldUseForever();
        break;
    case Alarm::Relative:
        form.interval = QString::number(alarm.ringWithinUnits());
        form.isMinuteUnits = alarm.isMinuteUnits();
        break;
    }
}

} // namespace

AlarmForm newAlarmForm(const QDateTime& now, qint64 shortestSnooze) {
    const QDateTime earliest = now.addSecs(secondsToEarliest);
    AlarmForm form;
    form.interval = QStringLiteral("1");
    form.atTimePicker = form.atAlarmTimePicker = wholeMinute(earliest.time());
    form.atTimePickerDate = form.atDatePicker = earliest.date();
    form.snoozeTime = shortestSnooze;
    return form;
}

AlarmForm formFilledFrom(const Alarm& alarm, AlarmForm form) {
    form.row = rowOf(alarm);
    form.title = alarm.title();
    fillWhen(form, alarm);
    form.shouldUseEveryDay = alarm.shouldUseEveryDay();
    form.shouldRepeat = alarm.shouldRepeat();
    form.snoozeTime = alarm.snoozeTime();
    form.soundPath = alarm.soundPath();
    form.isPlaySound = alarm.isPlaySound();
    form.shouldFadeIn = alarm.shouldFadeIn();
    form.voiceName = alarm.voiceName();
    form.isSpeakAlarmName = alarm.isSpeakAlarmName();
    return form;
}

QString soundName(const QString& soundPath) {
    return QFileInfo(soundPath).completeBaseName();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmBuilding.h"

#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "core/LocalTime.h"
#include "core/NextOccurrence.h"

namespace dorvane {

QDateTime fullDateWithTimeFrom(QTime time, QDate date) {
    return localMoment(date, QTime(time.hour(), time.minute()));
}

QDateTime timeOf(const AlarmForm& form, const QDateTime& now, const QString& todaysName) {
    if (form.row == Alarm::Dated) {
        const QDateTime time = fullDateWithTimeFrom(form.atTimePicker, form.atDatePicker);
        return form.shouldUseEveryDay && time <= now ? nextMomentAt(form.atTimePicker, now) : time;
    }
    if (form.row == Alarm::Weekly && form.weekdays.isEmpty())
        return nextMomentAt(form.atAlarmTimePicker, now);
    if (form.row == Alarm::Weekly)
        return firstWeekdayDate(form.weekdays,
                                fullDateWithTimeFrom(form.atAlarmTimePicker, now.date()), now,
                                todaysName);
    return {};
}

AlarmPtr quickAlarm(int minutes, const QString& soundPath, const QDateTime& now) {
    AlarmPtr alarm = Alarm::initWithTime(now, QStringLiteral("default"));
    alarm->setSnoozeTime(5);
    alarm->setIsMinuteUnits(true);
    alarm->setRingWithinUnits(minutes);
    alarm->setSoundPath(soundPath);
    alarm->setIsPlaySound(true);
    alarm->setIsDefaultAlarm(true);
    return alarm;
}

AlarmPtr alarmBuiltFrom(const AlarmForm& form, const QDateTime& now, const QString& todaysName,
                        const Alarm* editingOne) {
    AlarmPtr alarm = Alarm::initWithTime(timeOf(form, now, todaysName), form.title);
    alarm->setSnoozeTime(form.snoozeTime);
    alarm->setIsTimeWithDate(form.row == Alarm::Dated);
    alarm->setIsMinuteUnits(form.isMinuteUnits);
    alarm->setRingWithinUnits(intervalValue(form.interval));
    alarm->setSoundPath(form.soundPath);
    alarm->setIsPlaySound(form.isPlaySound);
    alarm->setIsSpeakAlarmName(form.isSpeakAlarmName);
    alarm->setShouldFadeIn(form.shouldFadeIn);
    alarm->setVoiceName(form.voiceName);
    alarm->setShouldRepeat(form.shouldRepeat);
    alarm->setShouldUseEveryDay(form.shouldUseEveryDay);
    alarm->setSelRowNo(form.row);
    if (editingOne)
        alarm->setRunTime(editingOne->selRowNo() == form.row ? editingOne->runTime(instantOf(now))
                                                             : now);
    if (form.row == Alarm::Weekly) {
        alarm->setShouldUseForever(form.shouldUseForever);
        alarm->setWeekdays(form.weekdays);
        alarm->setRunTime(alarm->time(instantOf(now)));
    }
    return alarm;
}

} // namespace dorvane

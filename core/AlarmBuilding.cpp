// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmBuilding.h"

#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "core/LocalTime.h"
#include "core/NextOccurrence.h"
#include "core/ShownTitle.h"

#include <algorithm>

namespace dorvane {

namespace {

AlarmPtr alarmWithSettingsOf(const AlarmForm& form) {
    AlarmPtr alarm = Alarm::create();
    alarm->setTitle(form.title);
    alarm->setSnoozeTime(form.snoozeTime);
    alarm->setIsTimeWithDate(form.row == Alarm::Dated);
    alarm->setIsMinuteUnits(form.isMinuteUnits);
    alarm->setRingWithinUnits(intervalValue(form.interval));
    alarm->setSoundPath(form.soundPath);
    alarm->setIsPlaySound(form.isPlaySound);
    alarm->setIsSpeakAlarmName(form.isSpeakAlarmName);
    alarm->setShouldFadeIn(form.shouldFadeIn);
    alarm->setRingsUntilAnswered(form.ringsUntilAnswered);
    alarm->setStartsSoftly(form.startsSoftly);
    alarm->setVoiceName(form.voiceName);
    alarm->setShouldRepeat(form.shouldRepeat);
    alarm->setShouldUseEveryDay(form.shouldUseEveryDay);
    alarm->setSelRowNo(form.row);
    if (form.row == Alarm::Weekly) {
        alarm->setShouldUseForever(form.shouldUseForever);
        alarm->setWeekdays(form.weekdays);
    }
    return alarm;
}

// Its days may have become fewer, or its date another, since the form was filled.
void takeOverTime(const Alarm& old, Alarm& alarm) {
    alarm.setTimeWishedAt(old.storedTime(), old.wishedTime());
    alarm.setWeekdays(old.weekdays());
    alarm.setRunTime(old.selRowNo() >= Alarm::Weekly ? old.storedTime() : old.storedRunTime());
    alarm.setSnoozedMinutes(old.snoozedMinutes());
}

// An alarm rings up to a second before it is due, and that occurrence is over.
QDateTime behindTheRingOf(const Alarm& alarm, const QDateTime& now) {
    return alarm.isTriggered() ? std::max(now, alarm.time(instantOf(now)).addMSecs(1)) : now;
}

// The moment that an edited timer counts from.
QDateTime startOf(const AlarmForm& form, const Alarm& old, const QDateTime& now) {
    if (old.selRowNo() != form.row)
        return now;
    const Instant present = instantOf(behindTheRingOf(old, now));
    const AlarmPtr timer = alarmWithSettingsOf(form);
    timer->setRunTime(old.runTime(instantOf(now)));
    return timer->due(present) > present ? timer->storedRunTime() : now;
}

} // namespace

QDateTime fullDateWithTimeFrom(QTime time, QDate date, const QDateTime& now) {
    return localMomentAfter(date, QTime(time.hour(), time.minute()), now);
}

QDateTime timeOf(const AlarmForm& form, const QDateTime& now, const QString& todaysName) {
    if (form.row == Alarm::Dated) {
        const QDateTime time = fullDateWithTimeFrom(form.atTimePicker, form.atDatePicker, now);
        return form.shouldUseEveryDay && time <= now ? nextMomentAt(form.atTimePicker, now) : time;
    }
    if (form.row == Alarm::Weekly && form.weekdays.isEmpty())
        return nextMomentAt(form.atAlarmTimePicker, now);
    if (form.row == Alarm::Weekly)
        return firstWeekdayDate(form.weekdays, form.atAlarmTimePicker, now, todaysName);
    return {};
}

AlarmPtr quickAlarm(int minutes, const RingDefaults& ring, const QDateTime& now) {
    AlarmPtr alarm = Alarm::initWithTime(now, quickTitle);
    alarm->setSnoozeTime(ring.snooze);
    alarm->setIsMinuteUnits(true);
    alarm->setRingWithinUnits(minutes);
    alarm->setSoundPath(ring.soundPath);
    alarm->setIsPlaySound(true);
    alarm->setIsDefaultAlarm(true);
    return alarm;
}

bool keepsItsTime(const EditedAlarm& edited, Instant now) {
    const std::optional<Instant> due = edited.alarm.due(now);
    return !edited.isTimeEdited && !edited.alarm.isTriggered() && due && *due > now;
}

AlarmPtr alarmBuiltFrom(const AlarmForm& form, const QDateTime& now, const QString& todaysName,
                        const std::optional<EditedAlarm>& edited) {
    AlarmPtr alarm = alarmWithSettingsOf(form);
    if (edited) {
        alarm->setIsExisInActiveAlarmList(edited->alarm.isExisInActiveAlarmList());
        alarm->setOtherValues(edited->alarm.otherValues());
    }
    if (edited && keepsItsTime(*edited, instantOf(now))) {
        takeOverTime(edited->alarm, *alarm);
        return alarm;
    }
    const QDateTime present = edited ? behindTheRingOf(edited->alarm, now) : now;
    const QTime timeOfDay = form.row == Alarm::Weekly ? form.atAlarmTimePicker : form.atTimePicker;
    alarm->setTimeWishedAt(timeOf(form, present, todaysName), timeOfDay);
    if (form.row == Alarm::Weekly)
        alarm->setRunTime(alarm->time(instantOf(now)));
    else if (edited)
        alarm->setRunTime(startOf(form, edited->alarm, now));
    return alarm;
}

} // namespace dorvane

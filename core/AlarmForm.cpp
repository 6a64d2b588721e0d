// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmForm.h"

#include "core/IntervalRule.h"

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

void fillWhen(AlarmForm& form, const Alarm& alarm, Instant now) {
    const QDateTime time = alarm.time(now).addSecs(-60 * qint64(alarm.snoozedMinutes()));
    const QTime timeOfDay = alarm.timeOfDay(now);
    switch (form.row) {
    case Alarm::Dated:
        if (time.isValid()) {
            form.atTimePicker = wholeMinute(timeOfDay);
            form.atDatePicker = time.date();
        }
        break;
    case Alarm::Weekly:
        if (time.isValid())
            form.atAlarmTimePicker = wholeMinute(timeOfDay);
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

AlarmForm newAlarmForm(const QDateTime& now, qint64 snooze) {
    const QDateTime earliest = now.addSecs(secondsToEarliest);
    AlarmForm form;
    form.interval = QStringLiteral("1");
    form.atTimePicker = form.atAlarmTimePicker = wholeMinute(earliest.time());
    form.atDatePicker = earliest.date();
    form.snoozeTime = snooze;
    return form;
}

AlarmForm formFilledFrom(const Alarm& alarm, AlarmForm form, Instant now) {
    form.row = rowOf(alarm);
    form.title = alarm.title();
    fillWhen(form, alarm, now);
    form.shouldUseEveryDay = alarm.shouldUseEveryDay();
    form.shouldRepeat = alarm.shouldRepeat();
    form.snoozeTime = alarm.snoozeTime();
    form.soundPath = alarm.soundPath();
    form.isPlaySound = alarm.isPlaySound();
    form.shouldFadeIn = alarm.shouldFadeIn();
    form.ringsUntilAnswered = alarm.ringsUntilAnswered();
    form.startsSoftly = alarm.startsSoftly();
    form.voiceName = alarm.voiceName();
    form.isSpeakAlarmName = alarm.isSpeakAlarmName();
    return form;
}

bool asksForTheSameTime(const AlarmForm& form, const AlarmForm& other) {
    if (form.row != other.row)
        return false;
    switch (form.row) {
    case Alarm::Dated:
        return form.atTimePicker == other.atTimePicker &&
               (form.atDatePicker == other.atDatePicker ||
                (form.shouldUseEveryDay && other.shouldUseEveryDay));
    case Alarm::Weekly:
        return form.atAlarmTimePicker == other.atAlarmTimePicker && form.weekdays == other.weekdays;
    case Alarm::Relative:
        break;
    }
    return intervalValue(form.interval) == intervalValue(other.interval) &&
           form.isMinuteUnits == other.isMinuteUnits;
}

FormFaults faultsOf(const AlarmForm& form) {
    FormFaults faults;
    if (form.title.trimmed().isEmpty()) {
        faults.message += QStringLiteral("Title must not be empty.\n");
        faults.field = FormFaults::Field::Title;
    }
    // What the field refuses while it is edited is no time either.
    if (form.row == Alarm::Relative && !isValidInterval(form.interval)) {
        faults.message += QStringLiteral("Alarm time is not set.\n");
        faults.field = FormFaults::Field::Interval;
    }
    if (const qint64 longest = longestInterval(form.isMinuteUnits);
        form.row == Alarm::Relative && intervalValue(form.interval) > longest) {
        faults.message +=
            QStringLiteral("Alarm time must be %1 %2 (a year) at most.\n")
                .arg(longest)
                .arg(form.isMinuteUnits ? QLatin1String("minutes") : QLatin1String("hours"));
        faults.field = FormFaults::Field::Interval;
    }
    if (form.isPlaySound && form.soundPath.isEmpty())
        faults.message += QStringLiteral("Please select sound to play.\n");
    if (form.isSpeakAlarmName && form.voiceName.isEmpty())
        faults.message += QStringLiteral("Please select voice to speak with.\n");
    return faults;
}

} // namespace dorvane

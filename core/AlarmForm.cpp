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
    const QDateTime time = alarm.time(now);
    switch (form.row) {
    case Alarm::Dated:
        if (time.isValid()) {
            form.atTimePicker = wholeMinute(time.time());
            form.atDatePicker = time.date();
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

AlarmForm newAlarmForm(const QDateTime& now, qint64 firstSnooze) {
    const QDateTime earliest = now.addSecs(secondsToEarliest);
    AlarmForm form;
    form.interval = QStringLiteral("1");
    form.atTimePicker = form.atAlarmTimePicker = wholeMinute(earliest.time());
    form.atDatePicker = earliest.date();
    form.snoozeTime = firstSnooze;
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
    form.voiceName = alarm.voiceName();
    form.isSpeakAlarmName = alarm.isSpeakAlarmName();
    return form;
}

FormFaults faultsOf(const AlarmForm& form) {
    FormFaults faults;
    if (form.title.isEmpty()) {
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

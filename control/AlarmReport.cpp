// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmReport.h"

#include "core/AlarmKeys.h"
#include "core/Rearm.h"
#include "core/WrittenWeekdays.h"

namespace dorvane {

namespace {

// The alarm's own time of day, snoozes aside.
QString timeOfDay(const Alarm& alarm) {
    const QTime wished = alarm.wishedTime();
    return (wished.isValid() ? wished : alarm.storedTime().time())
        .toString(QStringLiteral("HH:mm"));
}

void reportWhen(QVariantMap& report, const Alarm& alarm) {
    if (alarm.isTimeWithDate()) {
        report.insert(key::time, timeOfDay(alarm));
        report.insert(key::date, alarm.storedTime().date().toString(Qt::ISODate));
        report.insert(key::everyDay, alarm.shouldUseEveryDay());
    } else if (alarm.selRowNo() >= Alarm::Weekly) {
        report.insert(key::time, timeOfDay(alarm));
        report.insert(key::weekdays, weekdayKeys(alarm.weekdays()));
        report.insert(key::everyWeek, alarm.shouldUseForever());
    } else {
        report.insert(alarm.isMinuteUnits() ? key::minutes : key::hours, alarm.ringWithinUnits());
        report.insert(key::repeat, alarm.shouldRepeat());
    }
}

} // namespace

QVariantMap reportOf(const Alarm& alarm, Instant now) {
    QVariantMap report{{key::title, alarm.title()},
                       {key::sound, alarm.isPlaySound() ? alarm.soundPath() : QStringLiteral("")},
                       {key::fade, alarm.shouldFadeIn()},
                       {key::untilAnswered, alarm.ringsUntilAnswered()},
                       {key::softly, alarm.startsSoftly()},
                       {key::voice, alarm.isSpeakAlarmName() ? alarm.voiceName() : QString()},
                       {key::snooze, alarm.snoozeTime()}};
    reportWhen(report, alarm);
    if (const auto due = nextRing(alarm, now); due && !alarm.countsFromNow())
        report.insert(key::due, localDateTimeOf(*due).toSecsSinceEpoch());
    return report;
}

QVariantMap storedReportOf(const Alarm& alarm, Instant now) {
    const QDateTime moment = localDateTimeOf(now);
    const AlarmPtr started = alarm.storedCopy();
    applyRearm(rearmAtStart(alarm, moment, weekdayName(moment.date())), *started);
    if (started->isRelative())
        started->setRunTime({});
    return reportOf(*started, now);
}

QVariantMap runningReportOf(const Alarm& alarm, Instant now) {
    QVariantMap report = reportOf(alarm, now);
    report.insert(key::identity, alarm.identity());
    report.insert(key::ringing, alarm.isTriggered());
    report.insert(key::paused, alarm.isHeld(now));
    report.insert(key::snoozed, qint64(alarm.snoozedMinutes()));
    return report;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "platform/RunLoop.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {

// Due today at a time.
inline AlarmPtr datedAlarm(const RunLoop& loop, const QTime& time, const QString& title = {}) {
    const AlarmPtr alarm = Alarm::initWithTime({loop.now().date(), time}, title);
    alarm->setIsTimeWithDate(true);
    return alarm;
}

// Due some minutes after it is put into the clock.
inline AlarmPtr timerAlarm(int minutes) {
    const AlarmPtr alarm = Alarm::create();
    alarm->setIsDefaultAlarm(true);
    alarm->setIsMinuteUnits(true);
    alarm->setRingWithinUnits(minutes);
    return alarm;
}

// In the list of stored alarms.
inline AlarmPtr storedAlarm(const RunLoop& loop, const QTime& time, const QString& title) {
    const AlarmPtr alarm = datedAlarm(loop, time, title);
    alarm->setIsExisInActiveAlarmList(true);
    return alarm;
}

} // namespace dorvane::testing

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "tests/support/Dates.h"

namespace dorvane::testing {

// What a test says of an alarm; the rest is as in a new one. Times as for at().
struct AlarmOf {
    const char* title = "";
    qint64 kind = Alarm::Relative;
    qint64 minutes = 0;
    qint64 hours = 0;
    const char* time = nullptr;
    const char* runTime = nullptr;
    int snoozed = 0;
    WeekdaySet days = {};
    bool everyDay = false;
    bool repeats = false;
    bool forever = false;

    [[nodiscard]] AlarmPtr on(const RunLoop& loop) const {
        AlarmPtr alarm = Alarm::create(loop);
        alarm->setTitle(QString::fromUtf8(title));
        alarm->setSelRowNo(kind);
        alarm->setIsTimeWithDate(kind == Alarm::Dated);
        alarm->setIsMinuteUnits(hours == 0);
        alarm->setRingWithinUnits(hours == 0 ? minutes : hours);
        if (time)
            alarm->setTime(at(time));
        if (runTime)
            alarm->setRunTime(at(runTime));
        alarm->snooze(snoozed);
        alarm->setWeekdays(days);
        alarm->setShouldUseEveryDay(everyDay);
        alarm->setShouldRepeat(repeats);
        alarm->setShouldUseForever(forever);
        return alarm;
    }
};

} // namespace dorvane::testing

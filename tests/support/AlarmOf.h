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
    QTime wished = {}; // the time of day that was asked for, where the night has another
    const char* runTime = nullptr;
    int snoozed = 0;
    WeekdaySet days = {};
    bool everyDay = false;
    bool repeats = false;
    bool forever = false;
    int snoozeTime = 0;
    const char* sound = nullptr; // the path of what it plays
    const char* voice = nullptr; // speaks its title
    bool fades = false;
    bool untilAnswered = false;
    bool softly = false;
    bool isPreset = false; // made from the menu
    bool isListed = false; // among the stored alarms in the menu

    [[nodiscard]] AlarmPtr alarm() const {
        AlarmPtr made = Alarm::create();
        made->setTitle(QString::fromUtf8(title));
        made->setSelRowNo(kind);
        made->setIsTimeWithDate(kind == Alarm::Dated);
        made->setIsMinuteUnits(hours == 0);
        made->setRingWithinUnits(hours == 0 ? minutes : hours);
        if (time)
            made->setTimeWishedAt(at(time), wished);
        if (runTime)
            made->setRunTime(at(runTime));
        made->snooze(snoozed);
        made->setWeekdays(days);
        made->setShouldUseEveryDay(everyDay);
        made->setShouldRepeat(repeats);
        made->setShouldUseForever(forever);
        made->setSnoozeTime(snoozeTime);
        made->setIsPlaySound(sound);
        made->setSoundPath(QString::fromUtf8(sound));
        made->setIsSpeakAlarmName(voice);
        made->setVoiceName(QString::fromUtf8(voice));
        made->setShouldFadeIn(fades);
        made->setRingsUntilAnswered(untilAnswered);
        made->setStartsSoftly(softly);
        made->setIsDefaultAlarm(isPreset);
        made->setIsExisInActiveAlarmList(isListed);
        return made;
    }
};

} // namespace dorvane::testing

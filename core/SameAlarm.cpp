// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SameAlarm.h"

#include <algorithm>

namespace dorvane {

namespace {

// What was asked for, which one night may have no moment for.
QTime timeOfDay(const Alarm& alarm) {
    return alarm.wishedTime().isValid() ? alarm.wishedTime() : alarm.storedTime().time();
}

// A relative alarm has none, and the date of one that repeats moves on.
bool isAtTheSameTime(const Alarm& one, const Alarm& other) {
    if (one.isRelative())
        return true;
    const bool movesOn = one.selRowNo() >= Alarm::Weekly || one.shouldUseEveryDay();
    return movesOn ? timeOfDay(one) == timeOfDay(other) : one.storedTime() == other.storedTime();
}

// A weekday alarm that is not kept for every week uses its days up.
bool hasTheSameDays(const Alarm& one, const Alarm& other) {
    return !one.shouldUseForever() || one.weekdays() == other.weekdays();
}

} // namespace

bool isSameAlarm(const Alarm& one, const Alarm& other) {
    return one.title() == other.title() && one.selRowNo() == other.selRowNo() &&
           one.isTimeWithDate() == other.isTimeWithDate() &&
           one.ringWithinUnits() == other.ringWithinUnits() &&
           one.isMinuteUnits() == other.isMinuteUnits() &&
           one.shouldRepeat() == other.shouldRepeat() &&
           one.shouldUseEveryDay() == other.shouldUseEveryDay() &&
           one.shouldUseForever() == other.shouldUseForever() && hasTheSameDays(one, other) &&
           isAtTheSameTime(one, other);
}

std::vector<RunningAlarm> missingFrom(const std::vector<AlarmPtr>& now,
                                      std::vector<RunningAlarm> then) {
    for (const AlarmPtr& alarm : now) {
        const auto same = std::find_if(then.begin(), then.end(), [&](const RunningAlarm& running) {
            return isSameAlarm(*running.alarm, *alarm);
        });
        if (same != then.end())
            then.erase(same);
    }
    return then;
}

AlarmPtr runningAs(const Alarm& stored, const std::vector<AlarmPtr>& running) {
    const auto found = std::find_if(running.begin(), running.end(), [&](const AlarmPtr& alarm) {
        return !alarm->isDefaultAlarm() && isSameAlarm(*alarm, stored);
    });
    return found == running.end() ? nullptr : *found;
}

} // namespace dorvane

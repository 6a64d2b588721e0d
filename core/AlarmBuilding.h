// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace dorvane {

struct AlarmForm;
struct RingDefaults;

// The moment at the hour and minute of the time on the date, with no seconds; see
// localMomentAfter() for the nights on which clocks are set.
[[nodiscard]] QDateTime fullDateWithTimeFrom(QTime time, QDate date, const QDateTime& now);

// When the alarm in the form is due: nothing for a relative alarm, which works from its interval.
// One of every day whose time has passed, and one of weekdays without a day, is due when clocks
// show its time next. `todaysName` is the name of today's weekday, see weekdayNamed().
[[nodiscard]] QDateTime timeOf(const AlarmForm& form, const QDateTime& now,
                               const QString& todaysName);

// A timer of the menu, set at `now`: titled "default", it plays the sound.
[[nodiscard]] AlarmPtr quickAlarm(int minutes, const RingDefaults& ring, const QDateTime& now);

// The alarm that is being edited, and whether its time is: what was not touched stays as the alarm
// has it by now.
struct EditedAlarm {
    const Alarm& alarm;
    bool isTimeEdited = false;
};

// Whether an edited alarm keeps its time, its days and its snoozes. One that rings or has passed
// does not: what has rung counts anew.
[[nodiscard]] bool keepsItsTime(const EditedAlarm& edited, Instant now);

// A new alarm as the form says, set at `now`. An edited one hands on that the menu lists it, what
// only other versions know of it, and its time if it keeps that; a timer hands on the moment that
// it counts from unless it would have passed by now.
[[nodiscard]] AlarmPtr alarmBuiltFrom(const AlarmForm& form, const QDateTime& now,
                                      const QString& todaysName,
                                      const std::optional<EditedAlarm>& edited = {});

} // namespace dorvane

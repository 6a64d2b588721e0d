// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QDateTime>
#include <QString>

namespace dorvane {

struct AlarmForm;

// The moment at the hour and minute of the time on the date, with no seconds; see localMoment()
// for the nights on which clocks are set.
[[nodiscard]] QDateTime fullDateWithTimeFrom(QTime time, QDate date);

// When the alarm in the form is due: nothing for a relative alarm, which works from its interval.
// One of every day whose time has passed, and one of weekdays without a day, is due when clocks
// show its time next. `todaysName` is the name of today's weekday, see weekdayNamed().
[[nodiscard]] QDateTime timeOf(const AlarmForm& form, const QDateTime& now,
                               const QString& todaysName);

// A timer of the menu, set at `now`: titled "default", it plays the sound, which is a full path.
[[nodiscard]] AlarmPtr quickAlarm(int minutes, const QString& soundPath, const QDateTime& now);

// A new alarm as the form says, set at `now`. An alarm of the same kind that is being edited, which
// may be null, hands on the moment that it counts from; one of another kind counts from now.
[[nodiscard]] AlarmPtr alarmBuiltFrom(const AlarmForm& form, const QDateTime& now,
                                      const QString& todaysName, const Alarm* editingOne);

} // namespace dorvane

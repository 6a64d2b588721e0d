// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Weekday.h"

#include <QDateTime>

#include <optional>

namespace dorvane {

// The search for a weekday alarm's next date, once, and the two ways in which it is used. All are
// functions on values.

// How many days from today the first ticked day is, when the search starts with the day `from` at
// `offset` days from today. The set must not be empty.
[[nodiscard]] int daysToNextTicked(Weekday from, int offset, WeekdaySet ticked);

// The next date of an alarm that moves on: searched from `tomorrow` on, at the hour and minute of
// `timeOfDay`. Nothing when no day is ticked.
[[nodiscard]] std::optional<QDateTime> calculateNextDate(Weekday tomorrow, WeekdaySet ticked,
                                                         QTime timeOfDay, QDate today);

// The first date of an alarm that is being set, at the hour and minute of `timeOfDay`: today when
// today is ticked and the time is still ahead, else the next ticked day; today when no day is
// ticked, or when today's name (see weekdayNamed()) names no day.
[[nodiscard]] QDateTime firstWeekdayDate(WeekdaySet ticked, QTime timeOfDay, const QDateTime& now,
                                         const QString& todaysName);

} // namespace dorvane

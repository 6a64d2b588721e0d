// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Weekday.h"

#include <QLocale>
#include <QStringList>

#include <optional>

namespace dorvane {

// How days of the week are written: functions on text.

// The days that a text names; nothing for any other text. Days are called as in dateRead().
//
//   mon,thu  Mon and Thu  some of them
//   mon-fri  fri-mon      from one to the other
//   weekdays  weekend  daily
[[nodiscard]] std::optional<WeekdaySet> weekdaysRead(const QString& text, const QLocale& territory);

// "mon", "thu": as other programs are told of them.
[[nodiscard]] QStringList weekdayKeys(WeekdaySet days);

} // namespace dorvane

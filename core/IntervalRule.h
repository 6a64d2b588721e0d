// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

namespace dorvane {

// What may stand in the field for the minutes or hours of an alarm: the digits 0 to 9 alone, at
// least one, and worth more than 0. "007" is 7.
[[nodiscard]] bool isValidInterval(QStringView text);

// Whether typing can still make a valid interval of the text: no character but digits.
[[nodiscard]] bool canBecomeInterval(QStringView text);

// The number that the digits at the beginning of the text make: 0 without any, the largest number
// there is when they make a larger one.
[[nodiscard]] qint64 intervalValue(QStringView text);

// The largest interval that can be set, in minutes or in hours: a year.
[[nodiscard]] constexpr qint64 longestInterval(bool isMinuteUnits) {
    return isMinuteUnits ? 365 * 24 * 60 : 365 * 24;
}

} // namespace dorvane

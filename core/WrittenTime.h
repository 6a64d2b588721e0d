// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTime>

#include <optional>

namespace dorvane {

// How times of day are written: functions on text.

// "7:30 AM" on a twelve-hour clock, else "07:30".
[[nodiscard]] QString timeShown(QTime time, bool isTwelveHours);

struct TimeReading {
    std::optional<QTime> time;
    bool canBecomeTime = false; // by typing on
};

// Reads 7:30, 7.30, 7h30, 730, 0730, 7, 19:30, 845p and 8:45 pm, on clocks of both kinds. What has
// no mark and may be either half of a twelve-hour clock's day is of the half of `before`.
[[nodiscard]] TimeReading timeRead(const QString& text, QTime before, bool isTwelveHours);

} // namespace dorvane

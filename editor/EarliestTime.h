// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <optional>

namespace dorvane {

// The earliest time of day that can be chosen on a date when nothing may lie before `earliest`:
// nothing for "any", as on later days or without a bound.
[[nodiscard]] inline std::optional<QTime> earliestTimeOn(QDate date,
                                                         const std::optional<QDateTime>& earliest) {
    if (!earliest || earliest->date() != date)
        return std::nullopt;
    return QTime(earliest->time().hour(), earliest->time().minute());
}

} // namespace dorvane

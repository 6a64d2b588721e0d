// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <QDateTime>

#include <chrono>

namespace dorvane {

// A moment in time, independent of any zone, to the millisecond. Due times are kept and compared
// as instants, so that a tick costs no calendar work and a changed zone cannot move an alarm.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

[[nodiscard]] inline Instant instantOf(const QDateTime& date) {
    return Instant(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
}

[[nodiscard]] inline Instant instantNow(const RunLoop& runLoop) {
    return instantOf(runLoop.now());
}

[[nodiscard]] inline QDateTime localDateTimeOf(Instant instant) {
    return QDateTime::fromMSecsSinceEpoch(instant.time_since_epoch().count());
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QVariantMap>

namespace dorvane {

// What other programs are told of an alarm: the keys of its description, from which the same alarm
// can be made again, and when it is due.
[[nodiscard]] QVariantMap reportOf(const Alarm& alarm, Instant now);

// The same for a stored alarm, as it would run if it were started now.
[[nodiscard]] QVariantMap storedReportOf(const Alarm& alarm, Instant now);

// The same for a running alarm, with what there is of it only while it runs.
[[nodiscard]] QVariantMap runningReportOf(const Alarm& alarm, Instant now);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <optional>
#include <vector>

namespace dorvane {

// The first due time of these alarms after `moment` that is not held back, whether or not the alarm
// rings.
[[nodiscard]] std::optional<Instant> nearestDue(const std::vector<AlarmPtr>& alarms,
                                                Instant moment);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/NearestDue.h"

#include "core/Rearm.h"

#include <algorithm>

namespace dorvane {

std::optional<Instant> nearestDue(const std::vector<AlarmPtr>& alarms, Instant moment) {
    std::optional<Instant> nearest;
    for (const AlarmPtr& alarm : alarms)
        if (const auto due = nextRing(*alarm, moment); due && *due > moment)
            nearest = std::min(nearest.value_or(*due), *due);
    return nearest;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"
#include "platform/UserDefaults.h"

#include <vector>

namespace dorvane {

// Which records of two lists are one and the same alarm.
using IsSameAlarm = bool (*)(const Alarm& one, const Alarm& other);

[[nodiscard]] bool haveSameTitle(const Alarm& one, const Alarm& other);
[[nodiscard]] bool haveSameValues(const Alarm& one, const Alarm& other);

// How a list of alarms is joined with one that was stored elsewhere meanwhile, record by record:
// what either holds and the other never knew is kept, in the stored order first; an alarm that both
// changed is as it is here. Nothing that is here goes because it is missing there.
[[nodiscard]] std::vector<AlarmPtr> joinedAlarms(const std::vector<AlarmPtr>& base,
                                                 const std::vector<AlarmPtr>& ours,
                                                 const std::vector<AlarmPtr>& theirs,
                                                 IsSameAlarm isSame);

// The same for archived lists. The archive must outlive it.
[[nodiscard]] UserDefaults::Join joinOfAlarms(const AlarmArchive& archive, IsSameAlarm isSame);

} // namespace dorvane

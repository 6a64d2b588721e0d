// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RunningAlarm.h"

#include <vector>

namespace dorvane {

// Whether two records are the same alarm to the person who set it, though one may be stored and the
// other run, or each be of another run of the program: title, kind and times agree, but for what
// moves on by itself.
[[nodiscard]] bool isSameAlarm(const Alarm& one, const Alarm& other);

// What is in `then` and not in `now`; each alarm of `now` stands for one of `then`.
[[nodiscard]] std::vector<RunningAlarm> missingFrom(const std::vector<AlarmPtr>& now,
                                                    std::vector<RunningAlarm> then);

// The running alarm that was started from this one of the library; null when there is none. Quick
// alarms are not counted: there may be several of the same minutes.
[[nodiscard]] AlarmPtr runningAs(const Alarm& stored, const std::vector<AlarmPtr>& running);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QStringList>

#include <vector>

namespace dorvane {

class PendixTakeABreakSettings;

// What plays the sound file, in words that stand within a sentence: "the alarm “Tea”", "the break
// reminder". Of many alarms the first ones, and how many more; an alarm that is running and stored
// counts once.
[[nodiscard]] QStringList usersOfSound(const QString& path, const std::vector<AlarmPtr>& alarms,
                                       const PendixTakeABreakSettings& breaks);

} // namespace dorvane

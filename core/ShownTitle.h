// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

// The title under which the timers of the menu are stored.
inline const QString quickTitle = QStringLiteral("default");

// What people read for a title, which says nothing of a timer of the menu: its length, "5 min".
[[nodiscard]] inline QString shownTitle(const QString& title, qint64 minutes) {
    return title == quickTitle && minutes > 0 ? QStringLiteral("%1 min").arg(minutes) : title;
}
[[nodiscard]] inline QString shownTitle(const Alarm& alarm) {
    const bool isQuick = alarm.isDefaultAlarm() && alarm.isRelative() && alarm.isMinuteUnits();
    return shownTitle(alarm.title(), isQuick ? alarm.ringWithinUnits() : 0);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UsersNotificationManager.h"

#include "core/DateHelpers.h"
#include "platform/UserNotificationCenter.h"

namespace dorvane {

void UsersNotificationManager::synchronizeWithAlarms(UserNotificationCenter& center,
                                                     const std::vector<AlarmPtr>& alarms,
                                                     Instant now) {
    std::vector<UserNotification> notifications;
    for (const AlarmPtr& alarm : alarms) {
        const QDateTime due = alarm->time(now);
        if (!due.isValid())
            continue; // it never rings either
        notifications.push_back({.deliveryDate = due,
                                 .title = QStringLiteral("Dorvane"),
                                 .subtitle = shortDayTimeString(due),
                                 .informativeText = alarm->title()});
    }
    center.replaceScheduledNotifications(notifications);
}

} // namespace dorvane

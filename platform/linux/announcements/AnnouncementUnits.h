// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserNotificationCenter.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace dorvane {

// The units of the user's service manager that announcements are made of: a timer for each, which
// also holds its texts, a service that shows one, and a target that starts and stops them together.
// Functions on values.

inline const QString announcementTarget = QStringLiteral("dorvane-announcements.target");
inline const QString announcementService = QStringLiteral("dorvane-announce@.service");

// The file of the announcement with this identity: letters, digits.
[[nodiscard]] QString announcementTimer(const QString& id);

[[nodiscard]] QByteArray timerUnit(const QString& id, const UserNotification& notification);
[[nodiscard]] QByteArray serviceUnit(const QString& program);
[[nodiscard]] QByteArray targetUnit(const QStringList& timers);

// The announcement that a timer's file holds; nothing when the file is not one of ours.
[[nodiscard]] std::optional<UserNotification> notificationIn(const QByteArray& timerUnit);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

namespace dorvane {

// What the desktop is to show at a moment at which the program does not run. Plain text.
struct UserNotification {
    QDateTime deliveryDate; // to the second
    QString title;
    QString subtitle;
    QString informativeText;
    friend bool operator==(const UserNotification&, const UserNotification&) = default;
};

// The desktop's announcements for later. They outlive the program, the session and a restart of the
// machine; one that falls due while the machine is off appears at the next login. Main thread only.
class UserNotificationCenter {
public:
    virtual ~UserNotificationCenter() = default;

    // Withdraws what is scheduled and schedules these in its place. A desktop that cannot do it is
    // told of in the log, once. Returns within a second, however many there are.
    virtual void
    replaceScheduledNotifications(const std::vector<UserNotification>& notifications) = 0;
};

} // namespace dorvane

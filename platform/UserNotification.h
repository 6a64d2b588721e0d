// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// What the desktop is to show. Plain text.
struct UserNotification {
    QString title;
    QString subtitle;
    QString informativeText;
    friend bool operator==(const UserNotification&, const UserNotification&) = default;
};

} // namespace dorvane

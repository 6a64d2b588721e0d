// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <optional>

namespace dorvane {

// Starts the announcer, which looks whether this program has rung what is due, and announces it
// where it has not. What is scheduled outlives the program, in whatever way that ends. Main thread
// only.
class UserNotificationCenter {
public:
    virtual ~UserNotificationCenter() = default;

    // Has the announcer started at this moment, to the second, and no more at the one before; with
    // none, not at all. Returns at once; where nobody can do it, the log says so, once.
    virtual void scheduleAnnouncer(const std::optional<QDateTime>& moment) = 0;
};

} // namespace dorvane

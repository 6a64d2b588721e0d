// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/JournalContents.h"
#include "platform/UserNotification.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace dorvane {

// What is to be announced while the program does not run, decided on values: by the journal of its
// last run, which stays as it is, and by what was announced since.

// A due time of which the user was told. An alarm is known by its title.
struct ToldAlarm {
    Instant due;
    QString title;
    bool wasShown = true; // false: nobody took the announcement, and it was heard at most
    friend bool operator==(const ToldAlarm&, const ToldAlarm&) = default;
};

struct AnnouncementPlan {
    // What is to be shown now, the earliest first: an announcement for each alarm that has just
    // fallen due, and one for all that passed earlier, each alarm with its last due time.
    std::vector<UserNotification> notifications;
    // What has to be remembered once that is shown, in place of what was told before.
    std::vector<ToldAlarm> told;
    // The next due time ahead. What repeats moves on by itself.
    std::optional<Instant> next;
    // Whether the journal knows of any alarm.
    bool hasAlarms = false;
};

[[nodiscard]] AnnouncementPlan planAnnouncements(const JournalContents& journal,
                                                 const std::vector<ToldAlarm>& told, Instant now);

// Whether the user has seen that an alarm of this title was due then.
[[nodiscard]] bool wasShown(const std::vector<ToldAlarm>& told, Instant due, const QString& title);

// As bytes for a file. What cannot be read is left out.
[[nodiscard]] QByteArray encoded(const std::vector<ToldAlarm>& told);
[[nodiscard]] std::vector<ToldAlarm> toldIn(const QByteArray& data);

} // namespace dorvane

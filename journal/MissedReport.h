// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/AnnouncementPlan.h"

#include <QString>
#include <QStringList>

namespace dorvane {

// What a person is told of alarms that were missed: in a window at the start, and on the command
// line. Functions on values.

// One line each for what was lost, passed or went unanswered, and for crashes, the oldest first.
// `isRunning` tells whether the program runs: if not, nothing that falls due rings, and what was
// announced instead is told as that.
[[nodiscard]] QStringList missedReport(const JournalContents& journal, bool isRunning,
                                       const std::vector<ToldAlarm>& announced,
                                       const QDateTime& now);

// The alarm's title, also where it has none.
[[nodiscard]] QString titleOf(const Alarm& alarm);

// When it was to ring: "Sat, 10:05".
[[nodiscard]] QString dueText(const MissedAlarm& missed, const QDateTime& now);

// When it would ring if it were started now: "Sun, 10:05", "in 25 minutes"; for one that has had
// its day, that.
[[nodiscard]] QString dueAgainText(const MissedAlarm& missed, const QDateTime& now);

// Why they are missing, as a sentence.
[[nodiscard]] QString reasonText(const std::vector<MissedAlarm>& missed);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/MissedAlarm.h"

#include <QStringList>

#include <compare>
#include <optional>
#include <vector>

namespace dorvane {

// Something that happened to an alarm, or to the program.
struct JournalEvent {
    enum class What { Rang, Unanswered, Lost, Passed, Crashed, CameRoundAgain, Announced };

    What what = What::Rang;
    Instant when; // it was written down
    Instant due;  // the alarm's
    QString text; // one line: the alarm's title; of a crash, the path of its report
    friend std::weak_ordering operator<=>(const JournalEvent&, const JournalEvent&) = default;
};

// A title as an event has it.
[[nodiscard]] inline QString eventText(QString title) {
    return title.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

// What the journal holds.
struct JournalContents {
    QString line = {};                  // the same in all journals that go on from one another
    qint64 run = 0;                     // the number in it of the run that wrote it
    bool isOrderly = true;              // that has quit in order
    QStringList storedMarks;            // of lists that the preferences may hold, see ActiveAlarms
    std::vector<RunningAlarm> running;  // as the clock lists them
    std::vector<AlarmPtr> undated;      // they run, and nobody can read when they are due
    std::optional<Instant> pausedUntil; // see AlarmPause
    std::vector<MissedAlarm> missed;    // offered to the user, who has not answered yet
    std::vector<JournalEvent> events;   // the oldest first
};

} // namespace dorvane

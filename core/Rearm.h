// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"
#include "core/Weekday.h"

#include <QDateTime>

#include <optional>

namespace dorvane {

class Alarm;

// What becomes of an alarm once it rang, decided on values and carried out afterwards.
struct RearmDecision {
    enum class Outcome {
        Remove,      // it has had its day
        NextDay,     // the same time of day at `next`
        NextPeriod,  // again one interval after `next`, the due time without snoozes
        NextWeekday, // at `next`, with the days left in `weekdays`
        NoDayLeft,   // at once for the last time, with `weekdays` used up
        Unchanged,   // as it is
    };

    Outcome outcome = Outcome::Remove;
    QDateTime next;
    WeekdaySet weekdays;
    // The last occurrence that passed in silence between the one that rang and the next; invalid
    // when there was none.
    QDateTime missed;

    friend bool operator==(const RearmDecision&, const RearmDecision&) = default;
};

// An alarm that rang and was cleared: one that repeats is due at its first occurrence after `now`,
// in its old rhythm. `todaysName` as for weekdayNamed().
[[nodiscard]] RearmDecision rearmAfterRinging(const Alarm& alarm, const QDateTime& now,
                                              const QString& todaysName);

// An alarm of the previous run that is put back at the start.
[[nodiscard]] RearmDecision rearmAtRestore(const Alarm& alarm, const QDateTime& now,
                                           const QString& todaysName);

// Has an alarm whose time passed while nobody was there to ring it go on as if it had rung and been
// cleared each time, until it is due at `now` or later. False when it has had its day; it is then
// anywhere on its way. One that is due later already stays as it is, snoozes included.
[[nodiscard]] bool moveOnPast(Alarm& alarm, const QDateTime& now);

// When the alarm rings next: its due time, or where that is held back the first after it that is
// not. Nothing without a due time, or while it is held until somebody says otherwise.
[[nodiscard]] std::optional<Instant> nextRing(const Alarm& alarm, Instant now);

// Whether the alarm can go on, from what it is due for next, as if it had rung and been cleared:
// when it comes again after that, does not ring, and is not held back.
[[nodiscard]] bool canSkip(const Alarm& alarm, Instant now);

// An alarm of the library that is started, as if it were set anew: a relative one counts from then
// (Unchanged), one of every day goes to its next time, a weekday alarm whose moment has passed to
// its next ticked day, and none of its days is used up. Remove when its moment has passed for good.
[[nodiscard]] RearmDecision rearmAtStart(const Alarm& alarm, const QDateTime& now,
                                         const QString& todaysName);

// The minutes by which Snooze puts off an alarm that rings: those that are wanted, at least one; or
// as many as take it that far from `now` when its due time would have passed already. Fewer than
// none where the clock was set back since it began to ring.
[[nodiscard]] qint64 snoozeMinutes(const Alarm& alarm, qint64 wanted, Instant now);

// Changes the alarm's dates and days as decided; Remove and Unchanged change nothing.
void applyRearm(const RearmDecision& decision, Alarm& alarm);

} // namespace dorvane

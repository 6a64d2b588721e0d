// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RunningAlarm.h"
#include "core/SameAlarm.h"

#include <functional>
#include <optional>
#include <vector>

namespace dorvane {

// An alarm that is not running any more although nobody ended it.
struct MissedAlarm {
    enum class Reason {
        Lost,  // the program ended without an orderly quit
        Passed // its time passed while the program did not run
    };

    AlarmPtr alarm; // as it was when it was last written down
    Instant due;    // when it would have rung, snoozes included
    Reason reason = Reason::Lost;
};

// When the alarm would ring if it were started at `now`. One that is still ahead keeps its time, a
// timer that has run out counts anew, one that repeats goes on to its next day; nothing for one
// that has had its day.
[[nodiscard]] std::optional<QDateTime> dueAgain(const MissedAlarm& missed, const QDateTime& now);

// Has the alarm run as dueAgain() says, which must not be nothing; `schedule` puts it into the
// clock.
void startAgain(const MissedAlarm& missed, const QDateTime& now,
                const std::function<void(const AlarmPtr& alarm)>& schedule);

} // namespace dorvane

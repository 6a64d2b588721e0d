// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// What befalls an alarm from the moment it falls due until it is quiet again.
enum class RingEvent {
    Rings,
    Snoozed,
    Cleared,   // also when it was deleted or replaced while it rang
    Unanswered // nobody did anything within its snooze time; it is then cleared
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class SnoozeWindowController;

// Who is told what the user chose in a snooze window.
class SnoozeWindowControllerDelegate {
public:
    virtual ~SnoozeWindowControllerDelegate() = default;

    virtual void snoozeWindowDidSnooze(SnoozeWindowController& window) = 0;
    virtual void snoozeWindowDidClear(SnoozeWindowController& window) = 0;
    // All that rings is to be cleared.
    virtual void snoozeWindowDidClearAll(SnoozeWindowController& window) {
        snoozeWindowDidClear(window);
    }
    // Nobody answered within the alarm's snooze time, which clears the alarm.
    virtual void snoozeWindowWasNotAnswered(SnoozeWindowController& window) {
        snoozeWindowDidClear(window);
    }
};

} // namespace dorvane

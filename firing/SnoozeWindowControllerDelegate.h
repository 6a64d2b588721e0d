// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class SnoozeWindowController;

// Who is told what the user chose in a snooze window.
class SnoozeWindowControllerDelegate {
public:
    virtual ~SnoozeWindowControllerDelegate() = default;

    virtual void snoozeWindowDidSnooze(SnoozeWindowController& window) = 0;
    // Also when nobody answered within the alarm's snooze time.
    virtual void snoozeWindowDidClear(SnoozeWindowController& window) = 0;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSize>

#include <vector>

namespace dorvane {

class SnoozeWindowController;
class WindowPlace;

// The windows of the alarms that ring, which are all of one size: the first hangs from the icon,
// further ones stand in rows and columns beside it, so that none hides another's buttons, and the
// keyboard goes from one to the next. Main thread only.
class SnoozeWindowStack {
public:
    // The place must outlive the stack, and the stack its windows.
    explicit SnoozeWindowStack(const WindowPlace& place) : m_place(place) {}

    // Where the next window goes; and that the window went there.
    [[nodiscard]] QPoint nextPlace(QSize window) const;
    void add(SnoozeWindowController& window);

    // To be called while the window is still open: when it has the keyboard, that goes to another.
    void remove(const SnoozeWindowController& window);

    // Whether one of the windows has the keyboard.
    [[nodiscard]] bool hasKeyboard() const;

private:
    [[nodiscard]] std::size_t freeSlot() const;

    const WindowPlace& m_place;
    std::vector<SnoozeWindowController*> m_slots; // null where a window has gone
};

} // namespace dorvane

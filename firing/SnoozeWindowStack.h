// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/Notice.h"

#include <QPoint>
#include <QSize>

#include <deque>
#include <vector>

namespace dorvane {

class RunLoop;
class SnoozeWindowController;
class WindowPlace;

// The windows of the alarms that ring, which are all of one size: the first hangs from the icon,
// further ones stand in rows and columns beside it, so that none hides another's buttons, and the
// keyboard goes from one to the next. What the screen has no room for is shown as soon as another
// one is answered. Main thread only.
class SnoozeWindowStack {
public:
    // All must outlive the stack, and the stack its windows. `makeNotice` is empty where windows
    // stay above others.
    SnoozeWindowStack(RunLoop& runLoop, WindowPlace& place, MakeNotice makeNotice = {})
        : m_runLoop(runLoop), m_place(place), m_makeNotice(std::move(makeNotice)) {}

    // What goes with a window that others may hide; null for nothing.
    [[nodiscard]] std::unique_ptr<Notice> makeNotice() const {
        return m_makeNotice ? m_makeNotice() : nullptr;
    }

    // Shows the window, or has it wait for its place.
    void add(SnoozeWindowController& window);

    enum class Left { Answered, Otherwise };
    // To be called while the window is still open: when it has the keyboard, that goes to another.
    void remove(SnoozeWindowController& window, Left how);

    // Whether one of the windows has the keyboard.
    [[nodiscard]] bool hasKeyboard() const;

private:
    [[nodiscard]] std::vector<QPoint> placesFor(QSize window) const;
    void showWaiting();
    void offerClearAll();

    RunLoop& m_runLoop;
    WindowPlace& m_place;
    const MakeNotice m_makeNotice;
    std::vector<SnoozeWindowController*> m_slots; // null where a window has gone
    std::deque<SnoozeWindowController*> m_waiting;
    Lifeline<SnoozeWindowStack> m_lifeline{*this};
};

} // namespace dorvane

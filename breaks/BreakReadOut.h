// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace dorvane {

// What the breaks that are counted in minutes show, and ask, of the break preferences window. Main
// thread only.
class BreakReadOut {
public:
    virtual ~BreakReadOut() = default;

    // The caption of the read-out and its text.
    virtual void setNextBreakTimeLabel(const QString& text) = 0;
    virtual void setNextBreakTime(const QString& text) = 0;
    // Lets the text fade to `alpha`, 0.0 to 1.0, over a second, and come back over another.
    virtual void fadeNextBreakTime(double alpha) = 0;

    // Whether the switch for the sound at the start, and at the end, of a break can be used.
    [[nodiscard]] virtual bool isBreakEveryEnabled() const = 0;
    [[nodiscard]] virtual bool isBreakDurationEnabled() const = 0;

    // Brings the window to the front.
    virtual void showWindow() = 0;

    // As the window's stop button.
    virtual void stopRespito() = 0;
};

} // namespace dorvane

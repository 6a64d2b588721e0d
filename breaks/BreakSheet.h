// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace dorvane {

// How a break sheet came to its end.
enum class SheetCode : int {
    Done = 0,
    Replaced = 1, // by another sheet, or since the reminder was switched off
    PutOff = 2,
    Stopped = -1000,
};

// The window that asks for a break and counts it down. Main thread only.
class BreakSheet {
public:
    using Completion = std::function<void(SheetCode code)>;

    virtual ~BreakSheet() = default;

    // Called once when the sheet has ended, from inside the call or the click that ended it. The
    // sheet must not be destroyed inside it.
    virtual void setCompletion(Completion completion) = 0;

    // The countdown's text.
    virtual void setShowBreakTime(const QString& text) = 0;

    // Whether the break can be put off; before begin() only.
    virtual void setCanBePutOff(bool canBePutOff) = 0;

    // Shows the sheet, in front of everything.
    virtual void begin() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;

    // Takes the sheet away; a second end is none.
    virtual void end(SheetCode code) = 0;

    // As a click of the user does.
    virtual void clickStopBreak() = 0;
    virtual void clickSkipBreak() = 0;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// Keeps the machine from falling asleep because nobody uses it. A sleep that somebody asks for is
// never held up. Main thread only.
class SleepInhibitor {
public:
    virtual ~SleepInhibitor() = default;

    // Takes effect a moment later; a machine that does not know of this is told of in the log,
    // once. The same value again changes nothing.
    virtual void setHeld(bool isHeld) = 0;
};

} // namespace dorvane

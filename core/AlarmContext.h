// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// What is open on the screen for an alarm while it rings.
class AlarmContext {
public:
    virtual ~AlarmContext() = default;

    // Takes it off the screen; nobody is told. Closing twice is harmless.
    virtual void close() = 0;
};

} // namespace dorvane

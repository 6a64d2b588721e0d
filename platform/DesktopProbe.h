// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane {

// What this desktop has of the things that alarms lean on.
struct DesktopAbilities {
    bool schedulesAnnouncements = false; // for the time when the program does not run
    bool showsAnnouncements = false;
    bool tellsOfWaking = false; // from the machine's sleep
    bool clockIsSynchronised = false;
    friend bool operator==(const DesktopAbilities&, const DesktopAbilities&) = default;
};

// Asks the desktop what it has. Main thread only.
class DesktopProbe {
public:
    virtual ~DesktopProbe() = default;

    // Answers once, within some seconds, never from inside this call.
    virtual void ask(std::function<void(const DesktopAbilities& abilities)> done) = 0;
};

} // namespace dorvane

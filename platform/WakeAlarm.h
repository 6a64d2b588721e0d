// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <optional>

namespace dorvane {

// The clock that wakes a sleeping machine. Main thread only.
class WakeAlarm {
public:
    enum class Ability {
        Able,
        NotPermitted, // the process lacks the right
        NoClock,      // the machine has nothing that could wake it
    };

    virtual ~WakeAlarm() = default;

    [[nodiscard]] virtual Ability ability() const = 0;

    // Has the machine woken at this moment, in place of the one before; nothing forgets it. What
    // was armed is forgotten when the process ends. A machine that is awake notices nothing.
    // Without the ability nothing happens.
    virtual void arm(const std::optional<QDateTime>& moment) = 0;
};

} // namespace dorvane

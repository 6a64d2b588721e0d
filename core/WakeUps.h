// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <optional>

namespace dorvane {

class Clock;
class UserDefaults;
class WakeAlarm;

// Has the machine woken for the nearest alarm, where the user wants that. Main thread only.
class WakeUps {
public:
    // All of it must outlive this.
    WakeUps(RunLoop& runLoop, NotificationCenter& notifications, Clock& clock,
            UserDefaults& defaults, WakeAlarm& wakeAlarm);

    // The user's choice; off until made.
    [[nodiscard]] bool isOn() const;
    void setOn(bool on);

    [[nodiscard]] WakeAlarm& wakeAlarm() { return m_wakeAlarm; }

private:
    void update();

    RunLoop& m_runLoop;
    Clock& m_clock;
    UserDefaults& m_defaults;
    WakeAlarm& m_wakeAlarm;
    std::optional<QDateTime> m_armed;
    RunLoopTimer m_passed; // fires with the alarm, and costs no wake-up of its own
    NotificationCenter::Observation m_changes;
};

} // namespace dorvane

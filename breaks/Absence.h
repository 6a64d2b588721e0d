// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <functional>
#include <optional>

namespace dorvane {

class Presence;

// How long somebody was away: did nothing, had the session locked, or let the machine sleep. Main
// thread only.
class Absence {
public:
    // Told of each return. What is passed must outlive this; it becomes the presence's listener.
    Absence(RunLoop& runLoop, Presence& presence, NotificationCenter& notifications,
            std::function<void(RunLoop::Milliseconds length)> returned);
    ~Absence();
    Absence(const Absence&) = delete;
    Absence& operator=(const Absence&) = delete;

    [[nodiscard]] bool isAway() const { return m_since.has_value(); }

private:
    void presenceChanged();
    void woke();
    [[nodiscard]] RunLoop::Milliseconds slept() const;

    RunLoop& m_runLoop;
    Presence& m_presence;
    NotificationCenter& m_notifications;
    const std::function<void(RunLoop::Milliseconds length)> m_returned;
    std::optional<RunLoop::Milliseconds> m_since; // by RunLoop::sinceBoot()
    RunLoop::Milliseconds m_slept; // all of the machine's sleep that is accounted for
    NotificationCenter::Observation m_wakeObservation;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <chrono>

namespace dorvane {

// Has many changes in a row dealt with together: the first right after the present turn of the
// loop, those that follow no more often than once in an interval, and less often where that takes
// long. Main thread only.
class Coalescer {
public:
    // The loop must outlive it. `action` is never called from inside request().
    Coalescer(RunLoop& runLoop, std::chrono::milliseconds interval, RunLoop::Callback action,
              RunLoopMode mode = RunLoopMode::Default);

    // Something changed.
    void request();

    // Whether something changed that the action has not been called for.
    [[nodiscard]] bool isPending() const { return m_isPending; }

    // Calls the action now when something is pending.
    void finish();

private:
    RunLoop& m_runLoop;
    const std::chrono::milliseconds m_interval;
    const RunLoop::Callback m_action;
    const RunLoopMode m_mode;
    std::chrono::milliseconds m_next{0}; // the uptime before which the action rests
    bool m_isPending = false;
    RunLoopTimer m_timer;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <deque>
#include <functional>

namespace dorvane {

// Requests from outside, carried out in their order, a few in each turn of the loop: however many
// callers ask however fast, what is due on the loop gets its turn in between. Main thread only.
class RequestQueue {
public:
    // The loop must outlive it.
    explicit RequestQueue(RunLoop& runLoop) : m_runLoop(runLoop) {}

    // False, and nothing happens, when too many wait already.
    [[nodiscard]] bool add(std::function<void()> request);

private:
    void carryOutSome();

    RunLoop& m_runLoop;
    std::deque<std::function<void()>> m_waiting;
    RunLoopTimer m_turn;
};

} // namespace dorvane

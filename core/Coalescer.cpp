// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Coalescer.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// What takes long leaves at least nine tenths of the time to others.
constexpr int restForWork = 9;

} // namespace

Coalescer::Coalescer(RunLoop& runLoop, std::chrono::milliseconds interval, RunLoop::Callback action,
                     RunLoopMode mode)
    : m_runLoop(runLoop)
    , m_interval(interval)
    , m_action(std::move(action))
    , m_mode(mode)
    , m_next(runLoop.uptime()) {}

void Coalescer::request() {
    if (std::exchange(m_isPending, true))
        return;
    m_timer = m_runLoop.scheduleOnce(
        std::max(0ms, m_next - m_runLoop.uptime()), [this] { finish(); }, m_mode);
}

void Coalescer::finish() {
    if (!std::exchange(m_isPending, false))
        return;
    m_timer.cancel();
    const auto start = m_runLoop.uptime();
    m_action();
    const auto end = m_runLoop.uptime();
    m_next = end + std::max(m_interval, (end - start) * restForWork);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/RequestQueue.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr std::size_t mostWaiting = 2000;
constexpr auto share = 4ms; // of a turn of the loop

} // namespace

bool RequestQueue::add(std::function<void()> request) {
    if (m_waiting.size() >= mostWaiting)
        return false;
    m_waiting.push_back(std::move(request));
    if (m_waiting.size() == 1)
        m_turn = m_runLoop.scheduleOnce(
            0ms, [this] { carryOutSome(); }, RunLoopMode::Common);
    return true;
}

void RequestQueue::carryOutSome() {
    const auto end = m_runLoop.uptime() + share;
    do {
        m_waiting.front()();
        m_waiting.pop_front();
    } while (!m_waiting.empty() && m_runLoop.uptime() < end);
    if (!m_waiting.empty())
        m_turn = m_runLoop.scheduleOnce(
            0ms, [this] { carryOutSome(); }, RunLoopMode::Common);
}

} // namespace dorvane

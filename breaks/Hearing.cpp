// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/Hearing.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// A sound that broke off though the output is there may do so at once again.
constexpr auto pauseBeforeRetry = 2s;
// By then it is the sound's own fault.
constexpr int mostBrokenOff = 2;

} // namespace

Hearing::Hearing(RunLoop& runLoop, SoundOutput& output, RunLoop::Milliseconds patience,
                 std::function<void()> again)
    : m_runLoop(runLoop), m_output(output), m_patience(patience), m_again(std::move(again)) {}

void Hearing::begins() {
    m_isWaiting = false;
    m_isLost = m_isOutputLost;
    if (!m_watch)
        m_watch = m_output.watch([this](const SoundOutputState& state) { outputChanged(state); });
}

bool Hearing::ended(bool isComplete) {
    if (isComplete && !m_isLost) {
        cancel();
        return true;
    }
    if (!m_isLost && ++m_brokenOff == mostBrokenOff) {
        cancel();
        return false;
    }
    m_isWaiting = true;
    m_retry = m_runLoop.scheduleOnce(
        pauseBeforeRetry, [this] { playAgain(); }, RunLoopMode::Common);
    if (!m_end)
        m_end = m_runLoop.scheduleOnce(
            m_patience, [this] { cancel(); }, RunLoopMode::Common);
    return false;
}

void Hearing::cancel() {
    m_isWaiting = false;
    m_isOutputLost = false;
    m_brokenOff = 0;
    m_retry.cancel();
    m_end.cancel();
    m_watch.reset();
}

void Hearing::outputChanged(const SoundOutputState& state) {
    const bool wasLost = std::exchange(m_isOutputLost, state.isLoss());
    m_isLost = m_isLost || m_isOutputLost;
    m_brokenOff = m_isOutputLost ? 0 : m_brokenOff;
    if (wasLost && !m_isOutputLost && m_isWaiting) // later: the watch must not go inside its call
        m_retry = m_runLoop.scheduleOnce(
            0ms, [this] { playAgain(); }, RunLoopMode::Common);
}

void Hearing::playAgain() {
    if (m_isWaiting && !m_isOutputLost)
        m_again();
}

} // namespace dorvane

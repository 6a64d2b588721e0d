// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <functional>

namespace dorvane::testing {

// For tests of what runs on threads or at a server: runs the real loop until `done`; false after
// `limit`.
inline bool runUntil(RunLoop& loop, const std::function<bool()>& done,
                     std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    QElapsedTimer waited;
    waited.start();
    const auto wake = loop.scheduleRepeating(
        std::chrono::milliseconds(1), [] {}, RunLoopMode::Common);
    while (!done() && waited.elapsed() < limit.count())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return done();
}

} // namespace dorvane::testing

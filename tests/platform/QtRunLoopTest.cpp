// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/QtRunLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace dorvane;
using namespace std::chrono_literals;

namespace {

class QtRunLoopTest : public ::testing::Test {
protected:
    // Runs the real loop until `done`, or fails after two seconds.
    void runUntil(const std::function<bool()>& done) {
        QElapsedTimer waited;
        waited.start();
        while (!done() && waited.elapsed() < 2000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        EXPECT_TRUE(done());
    }

    QtRunLoop m_loop;
};

TEST_F(QtRunLoopTest, alignedTimerFiresAtOnceAndThenNeverBeforeItsGridMoment) {
    const QDateTime first = m_loop.now().addMSecs(-250);
    QList<qint64> since;
    const auto timer = m_loop.scheduleAligned(
        first, 100ms, [&] { since.append(first.msecsTo(m_loop.now())); }, RunLoopMode::Default);
    runUntil([&] { return since.size() == 4; });
    EXPECT_LT(since[0], 300) << "a past moment fires at once";
    for (int i = 1; i < since.size(); ++i) {
        EXPECT_LT(since[i] % 100, 60) << "firing " << i << " is just after a grid moment";
        EXPECT_GT(since[i], since[i - 1]);
    }
}

TEST_F(QtRunLoopTest, defaultTimersWaitForTheMenuToCloseAndThenCatchUpOnce) {
    QStringList trace;
    m_loop.beginEventTracking();
    const auto tick = m_loop.scheduleRepeating(
        10ms, [&] { trace << QStringLiteral("tick"); }, RunLoopMode::Default);
    const auto close = m_loop.scheduleOnce(
        65ms,
        [&] {
            trace << QStringLiteral("close");
            m_loop.endEventTracking();
        },
        RunLoopMode::Common);
    runUntil([&] { return trace.size() >= 2; });
    EXPECT_EQ(trace.mid(0, 2), (QStringList{QStringLiteral("close"), QStringLiteral("tick")}));
}

TEST_F(QtRunLoopTest, timerMayCancelItselfAndItsNeighbourFromItsCallback) {
    QStringList trace;
    RunLoopTimer self;
    RunLoopTimer neighbour;
    self = m_loop.scheduleRepeating(
        5ms,
        [&] {
            trace << QStringLiteral("self");
            neighbour.cancel();
            self.cancel();
        },
        RunLoopMode::Default);
    neighbour = m_loop.scheduleOnce(
        5ms, [&] { trace << QStringLiteral("neighbour"); }, RunLoopMode::Default);
    const auto end = m_loop.scheduleOnce(
        40ms, [&] { trace << QStringLiteral("end"); }, RunLoopMode::Default);
    runUntil([&] { return trace.contains(QStringLiteral("end")); });
    EXPECT_EQ(trace, (QStringList{QStringLiteral("self"), QStringLiteral("end")}));
}

TEST_F(QtRunLoopTest, handleMayOutliveTheLoop) {
    auto loop = std::make_unique<QtRunLoop>();
    auto timer = loop->scheduleOnce(
        1h, [] {}, RunLoopMode::Default);
    loop.reset();
    timer.cancel();
    EXPECT_FALSE(timer);
}

} // namespace

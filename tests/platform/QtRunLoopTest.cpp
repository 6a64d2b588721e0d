// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/QtRunLoop.h"

#include "tests/support/Testing.h"

#include <QTest>

#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

using namespace dorvane::testing;

namespace {

bool wasClockSet = false; // so that the next timer hears of it, and forgets its moment

} // namespace

// In the place of the system's, for the whole test program.
extern "C" int timerfd_settime(int timer, int flags, const itimerspec* when,
                               itimerspec* before) noexcept {
    if ((flags & TFD_TIMER_CANCEL_ON_SET) != 0 && wasClockSet) {
        wasClockSet = false;
        errno = ECANCELED;
        return -1;
    }
    return int(::syscall(SYS_timerfd_settime, timer, flags, when, before));
}

namespace {

class QtRunLoopTest : public ::testing::Test {
protected:
    QtRunLoop m_loop;
};

TEST_F(QtRunLoopTest, momentOfTheWallClockIsNeverEarlyAndAPastOneComesAtOnce) {
    QStringList trace;
    std::vector<RunLoopTimer> timers;
    for (const int milliseconds : {80, 30, -3'600'000, 30}) {
        const QDateTime moment = m_loop.now().addMSecs(milliseconds);
        timers.push_back(m_loop.scheduleAt(
            moment,
            [&trace, milliseconds, moment, this] {
                trace << QString::number(milliseconds);
                EXPECT_GE(m_loop.now(), moment);
            },
            RunLoopMode::Default));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return trace.size() == 4; }));
    EXPECT_EQ(trace.join(u' ').toStdString(), "-3600000 30 30 80");
}

TEST_F(QtRunLoopTest, timerMayCancelItselfAndItsNeighbourFromItsCallback) {
    QStringList trace;
    RunLoopTimer self;
    RunLoopTimer neighbour;
    self = m_loop.scheduleRepeating(
        5ms,
        [&] {
            trace << u"self"_qs;
            neighbour.cancel();
            self.cancel();
        },
        RunLoopMode::Default);
    neighbour = m_loop.scheduleOnce(
        5ms, [&] { trace << u"neighbour"_qs; }, RunLoopMode::Default);
    const auto end = m_loop.scheduleOnce(
        40ms, [&] { trace << u"end"_qs; }, RunLoopMode::Default);
    EXPECT_TRUE(QTest::qWaitFor([&] { return trace.contains(u"end"_qs); }));
    EXPECT_EQ(trace, (QStringList{u"self"_qs, u"end"_qs}));
}

TEST_F(QtRunLoopTest, clockThatIsSetIsToldOfBeforeWhatThatMakesDue) {
    QStringList trace;
    const auto told = m_loop.whenClockIsSet([&] { trace << u"set"_qs; });
    wasClockSet = true;
    const auto due = m_loop.scheduleAt(
        m_loop.now().addSecs(-1), [&] { trace << u"due"_qs; }, RunLoopMode::Default);
    EXPECT_TRUE(QTest::qWaitFor([&] { return trace.size() == 2; }, 1000));
    EXPECT_EQ(trace, (QStringList{u"set"_qs, u"due"_qs}));
}

// timedatectl and the settings of desktops put a new link in the place of the old one.
TEST_F(QtRunLoopTest, zoneThatIsLinkedAnewCountsAsAClockThatWasSet) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"localtime"_qs);
    ASSERT_TRUE(QFile::link(u"Europe/Berlin"_qs, link));
    int set = 0;
    const WallClock clock({.reached = [] {}, .wasSet = [&] { ++set; }},
                          QFile::encodeName(link).constData());
    ASSERT_TRUE(QFile::link(u"Asia/Tokyo"_qs, link + u".new"_qs));
    EXPECT_FALSE(QTest::qWaitFor([&] { return set > 0; }, 50)) << "another file";
    std::rename(qPrintable(link + u".new"_qs), qPrintable(link));
    EXPECT_TRUE(QTest::qWaitFor([&] { return set > 0; }));
}

} // namespace

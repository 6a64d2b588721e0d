// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include "core/AlarmDelegate.h"
#include "core/NotificationNames.h"
#include "tests/support/Dates.h"
#include "tests/support/VirtualRunLoop.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;

namespace {

// A clock whose alarms write down when they report; each is then marked triggered, as ringing does.
class ClockTest : public ::testing::Test, protected AlarmDelegate {
protected:
    void alarmTriggered(const AlarmPtr& alarm) override {
        m_trace << m_loop.now().toString(QStringLiteral("HH:mm:ss ")) + alarm->title();
        alarm->setIsTriggered(true);
    }

    AlarmPtr dated(const char* title, const char* time) {
        const AlarmPtr alarm = Alarm::initWithTime(m_loop, at(time), QString::fromLatin1(title));
        alarm->setIsTimeWithDate(true);
        alarm->setSelRowNo(Alarm::Dated);
        alarm->setDelegate(this);
        m_clock.insertAlarm(alarm);
        return alarm;
    }

    AlarmPtr timer(const char* title, int minutes) {
        const AlarmPtr alarm = Alarm::create(m_loop);
        alarm->setTitle(QString::fromLatin1(title));
        alarm->setIsMinuteUnits(true);
        alarm->setRingWithinUnits(minutes);
        alarm->setDelegate(this);
        m_clock.insertAlarm(alarm);
        return alarm;
    }

    std::string titles() const {
        QStringList list;
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            list << alarm->title();
        return list.join(QLatin1Char('|')).toStdString();
    }

    std::string trace() const { return m_trace.join(QLatin1Char('|')).toStdString(); }

    VirtualRunLoop m_loop{at("2026-11-21 08:00").addMSecs(400)};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    QStringList m_trace;
};

TEST_F(ClockTest, ticksOnWholeSecondsInListOrderAndReportsEachOnce) {
    dated("first", "2026-11-21 08:00:00");
    dated("a", "2026-11-21 08:01:00");
    dated("b", "2026-11-21 08:01:00");
    timer("t", 1);
    m_loop.advance(3min);
    // Inserted last, reported first; and on the whole second before the due time a full second is
    // left.
    EXPECT_EQ(trace(), "08:00:00 first|08:01:00 t|08:01:00 b|08:01:00 a");
    EXPECT_EQ(m_loop.firings(), 181) << "once a second and no more";
}

TEST_F(ClockTest, standsStillWhileAMenuIsOpenAndCatchesUp) {
    dated("a", "2026-11-21 08:00:10");
    dated("b", "2026-11-21 08:00:00");
    m_loop.beginEventTracking();
    m_loop.advance(90s);
    EXPECT_EQ(trace(), "");
    m_loop.endEventTracking();
    m_loop.advance(1s);
    EXPECT_EQ(trace(), "08:01:30 b|08:01:30 a");
}

TEST_F(ClockTest, afterSleepWhatFellDueRingsOneSecondAfterWaking) {
    m_loop.setWoken([this] { m_notifications.post(wakeNotification); });
    dated("a", "2026-11-21 09:00");
    m_loop.advance(500ms); // 08:00:00.900
    m_loop.sleepMachine(8h);
    // The regular tick may be first: it is on the wall clock's whole second as well.
    m_loop.advance(1s);
    ASSERT_EQ(m_trace.size(), 1);
    EXPECT_EQ(m_trace.first(), QStringLiteral("16:00:01 a"));
    m_loop.advance(10s);
    EXPECT_EQ(m_trace.size(), 1) << "a second report";
}

TEST_F(ClockTest, aClockThatIsSetNeitherSkipsNorRepeatsAnAlarm) {
    dated("a", "2026-11-21 08:30");
    m_loop.advance(5s);
    m_loop.setWall(at("2026-11-21 09:00:00"));
    m_loop.advance(2s);
    m_loop.setWall(at("2026-11-21 08:29:58"));
    m_loop.advance(10s);
    ASSERT_EQ(m_trace.size(), 1);
    EXPECT_TRUE(m_trace.first().startsWith(QStringLiteral("09:00:0")));
}

TEST_F(ClockTest, insertingStartsATimerAfreshAndMovesItToTheFront) {
    const AlarmPtr tea = timer("tea", 10);
    const AlarmPtr egg = timer("egg", 5);
    m_loop.advance(4min);
    tea->snooze(3);
    m_clock.insertAlarm(tea);
    EXPECT_EQ(titles(), "tea|egg");
    m_clock.insertAlarm(m_clock.allAlarms().back()); // the very pointer in the list
    EXPECT_EQ(titles(), "egg|tea");
    m_clock.insertAlarm(tea);
    EXPECT_EQ(tea->time(), at("2026-11-21 08:14:00"));
    EXPECT_TRUE(tea->isActive());

    const AlarmPtr monday = Alarm::initWithTime(m_loop, at("2026-11-23 07:00:20"), QString());
    monday->setSelRowNo(Alarm::Weekly);
    m_clock.insertAlarm(monday);
    EXPECT_EQ(monday->storedRunTime(), at("2026-11-23 07:00:20"));
}

TEST_F(ClockTest, removingAndReplacingGoByIdentity) {
    const AlarmPtr a = dated("same", "2026-11-21 09:00");
    const AlarmPtr b = dated("same", "2026-11-21 09:00");
    int changes = 0;
    const auto observation = m_notifications.addObserver(
        alarmsDidChangeNotification, [&](const void*) { ++changes; }, &m_clock);
    m_clock.removeAlarm(a);
    m_clock.removeAlarm(a);
    ASSERT_EQ(m_clock.allAlarms().size(), 1u);
    EXPECT_EQ(m_clock.allAlarms().front(), b);

    const AlarmPtr c = Alarm::create(m_loop);
    EXPECT_FALSE(m_clock.replaceAlarm(a, c));
    EXPECT_TRUE(m_clock.replaceAlarm(b, c));
    EXPECT_EQ(m_clock.allAlarms().front(), c);
    EXPECT_FALSE(c->isActive() || c->storedRunTime().isValid());
    EXPECT_EQ(changes, 2) << "one for each change, none for what changed nothing";
}

TEST_F(ClockTest, nearestAlarmCountsWholeSecondsAndTiesGoToTheFront) {
    EXPECT_EQ(m_clock.nearestAlarm(), nullptr);
    const AlarmPtr later = dated("later", "2026-11-21 08:02");
    const AlarmPtr back = dated("back", "2026-11-21 08:01");
    const AlarmPtr front = dated("front", "2026-11-21 08:01");
    EXPECT_EQ(m_clock.nearestAlarm(), front);
    m_loop.setWall(at("2026-11-21 09:00"));
    EXPECT_EQ(m_clock.nearestAlarm(), front) << "the longest past wins";
    front->snooze(10);
    EXPECT_EQ(m_clock.nearestAlarm(), back);
}

} // namespace

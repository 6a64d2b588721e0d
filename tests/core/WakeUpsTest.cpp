// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WakeUps.h"

#include "core/Clock.h"
#include "core/UsersNotificationManager.h"
#include "platform/UserNotificationCenter.h"
#include "platform/WakeAlarm.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

class WakeUpsTest : public ::testing::Test, protected WakeAlarm, protected UserNotificationCenter {
protected:
    [[nodiscard]] Ability ability() const override { return Ability::Able; }
    void arm(const std::optional<QDateTime>& moment) override {
        m_trace.add(moment ? moment->toString(u"dd HH:mm"_qs) : u"none"_qs);
    }

    void scheduleAnnouncer(const std::optional<QDateTime>& moment) override {
        m_trace.add(moment ? moment->toString(u"dd HH:mm:ss"_qs) : u"none"_qs);
    }

    AlarmPtr insert(const char* time) {
        AlarmPtr alarm = AlarmOf{.kind = Alarm::Dated, .time = time}.alarm();
        m_clock.insertAlarm(alarm);
        return alarm;
    }

    VirtualRunLoop m_loop{at("2026-11-24 08:00")};
    Trace m_trace{m_loop};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    MemoryDefaults m_defaults;
    WakeUps m_wakeUps{m_loop, m_notifications, m_clock, m_defaults, *this};
};

// For which alarm, whatever happens to it, is tested in tests/menubar/ScenesTest.cpp.
TEST_F(WakeUpsTest, armsTheNearestAlarmWhereThatIsWantedInTheNextRunToo) {
    insert("2026-11-24 09:00");
    insert("2026-11-25 07:00");
    EXPECT_FALSE(m_wakeUps.isOn());
    m_wakeUps.setOn(true);
    m_clock.alarmDidChange();
    const WakeUps nextRun{m_loop, m_notifications, m_clock, m_defaults, *this};
    m_wakeUps.setOn(false);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 24 09:00", "0 24 09:00", "0 none"));
    EXPECT_EQ(m_defaults.written(), (QVariantMap{{u"WakesComputer"_qs, false}}));
}

// Never later than the nearest alarm, until the journal must have it that it rang; and once for
// many changes in a row.
TEST_F(WakeUpsTest, theAnnouncerIsKeptScheduledForWhatIsNearest) {
    const UsersNotificationManager announcements(m_loop, m_notifications, m_clock, *this);
    m_loop.advance(1s);
    const AlarmPtr tea = insert("2026-11-24 08:10");
    const AlarmPtr nap = insert("2026-11-24 08:30");
    m_loop.advance(1s);
    tea->setTitle(u"green"_qs);
    m_clock.alarmDidChange();
    m_loop.advance(9min);
    EXPECT_EQ(m_loop.firings(), 3) << "but for the changes nothing wakes up for it";
    m_loop.advance(2min);
    tea->snooze(5);
    m_clock.alarmDidChange();
    for (int i = 0; i < 100; ++i)
        m_clock.removeAlarm(insert("2026-11-24 08:13"));
    m_loop.advance(1s);
    m_clock.removeAlarm(tea);
    m_clock.removeAlarm(nap);
    m_loop.advance(1s);
    const UsersNotificationManager nextRun(m_loop, m_notifications, m_clock, *this);
    m_loop.advance(1h);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 none", "1000 24 08:10:05", "603000 24 08:30:05",
                                              "662000 24 08:15:05", "663000 none", "664000 none"));
}

} // namespace

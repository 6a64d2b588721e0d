// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusView.h"

#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "tests/menubar/MenuAlarms.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/VirtualRunLoop.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;

namespace {

class StatusViewTest : public ::testing::Test {
protected:
    [[nodiscard]] AlarmPtr timer(int minutes) const { return timerAlarm(m_loop, minutes); }
    [[nodiscard]] AlarmPtr dated(const QTime& time, const QString& title = {}) const {
        return datedAlarm(m_loop, time, title);
    }
    [[nodiscard]] bool shows(int end, int duration) const {
        return m_item.shown() == StatusPicture().icon({end, duration}).pixmap(22).toImage();
    }
    // One letter for each step: the full disc, nothing, or a wedge.
    [[nodiscard]] char glance() const { return shows(0, 60) ? 'O' : shows(0, 0) ? '.' : 'v'; }

    VirtualRunLoop m_loop{QDateTime({2026, 11, 24}, {10, 0, 0, 250})};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    FakeStatusItem m_item;
};

// What a view would show that looks at the clock ten times a second, on a phase of its own.
class TenTimesASecond {
public:
    TenTimesASecond(VirtualRunLoop& loop, const Clock& clock)
        : m_clock(clock)
        , m_timer(loop.scheduleRepeating(
              100ms, [this] { look(); }, RunLoopMode::Default)) {}

    void startFlashing() { m_flashing = true; }
    void flash(bool on) { m_wedge = {0, on ? 60 : 0}; }
    void stopFlashing() {
        m_flashing = false;
        m_wedge = {};
    }
    [[nodiscard]] StatusPicture::Wedge wedge() const { return m_wedge; }

private:
    void look() {
        if (m_flashing)
            return;
        m_wedge = {};
        if (const AlarmPtr nearest = m_clock.nearestAlarm()) {
            const Alarm::MinutesAndSeconds left = nearest->minutesFromNow();
            const int minutes = int(left.minutes) + 1 - (left.seconds == 0 ? 1 : 0);
            m_wedge = {nearest->minute(), std::min(minutes, 60)};
        }
    }

    const Clock& m_clock;
    StatusPicture::Wedge m_wedge;
    bool m_flashing = false;
    RunLoopTimer m_timer;
};

TEST_F(StatusViewTest, showsWhatALoopOfATenthOfASecondWouldShow) {
    StatusView view(m_loop, m_clock, m_notifications, m_item);
    m_loop.advance(37ms); // the two look at different moments
    TenTimesASecond literal(m_loop, m_clock);

    const AlarmPtr soon = timer(3);
    const AlarmPtr tie = timer(3);
    const AlarmPtr later = dated({10, 6});
    const AlarmPtr far = dated({12, 30});
    RunLoopTimer flashes;
    bool phase = true;
    const std::map<int, std::function<void()>> script = {
        // by tenths of a second
        {12, [&] { m_clock.insertAlarm(far); }},
        {25, [&] { m_clock.insertAlarm(later); }},
        {303, [&] { m_clock.insertAlarm(soon); }},
        {310, [&] { m_clock.insertAlarm(tie); }},
        {700,
         [&] {
             soon->snooze(4);
             m_clock.alarmDidChange();
         }},
        {1500, [&] { m_clock.removeAlarm(tie); }},
        {1555, [&] { m_clock.insertAlarm(tie); }},
        {2000,
         [&] { later->setTime(later->storedTime().addSecs(7200)), m_clock.alarmDidChange(); }},
        {3355,
         [&] { // the tie has been overdue, and now rings
             view.startFlashing();
             view.startFlashing();
             literal.startFlashing();
             flashes = m_loop.scheduleRepeating(
                 1s, [&] { literal.flash(std::exchange(phase, !phase)); }, RunLoopMode::Default);
         }},
        {3463,
         [&] {
             m_clock.removeAlarm(tie);
             flashes.cancel();
             literal.stopFlashing();
             view.stopFlashing();
         }},
        {4000, [&] { m_loop.beginEventTracking(); }},
        {4444, [&] { m_clock.removeAlarm(soon); }},
        {4500, [&] { m_loop.endEventTracking(); }},
        {6000, [&] { m_loop.sleepMachine(30min), m_notifications.post(wakeNotification); }},
        {6300, [&] { m_clock.removeAlarm(later), m_clock.removeAlarm(far); }},
    };

    // Either may be a step ahead of the other, never two.
    bool differed = false;
    for (int tenth = 0; tenth < 6500; ++tenth) {
        if (const auto step = script.find(tenth); step != script.end())
            step->second();
        m_loop.advance(100ms);
        const StatusPicture::Wedge wedge = literal.wedge();
        const bool differs = !shows(wedge.end, wedge.duration);
        ASSERT_FALSE(differs && differed) << "for two looks, at " << tenth;
        differed = differs;
    }
    EXPECT_TRUE(shows(0, 0));
}

TEST_F(StatusViewTest, wakesWithTheClockAndSendsOnlyWhatChanged) {
    StatusView view(m_loop, m_clock, m_notifications, m_item);
    EXPECT_EQ(m_item.toolTips, QStringList{QStringLiteral("Dorvane")});
    for (int i = 0; i < 50; ++i)
        m_clock.insertAlarm(dated({10, 30}, QStringLiteral("Tea\n& <b>cake</b>")));
    m_loop.runPending();
    EXPECT_EQ(m_item.iconsSent, 2) << "one pass for fifty changes";

    const std::int64_t before = m_loop.firings();
    m_loop.advance(10min);
    EXPECT_EQ(m_loop.firings() - before, 2 * 600) << "the tick and the pass, at the same moments";
    EXPECT_EQ(m_item.iconsSent, 2 + 10) << "one a minute";
    EXPECT_EQ(m_item.toolTips.mid(1),
              QStringList{QStringLiteral("Tue, 10:30 \u2013 Tea & <b>cake</b>")});
}

TEST_F(StatusViewTest, flashesBetweenDiscAndNothingUntilItIsStopped) {
    StatusView view(m_loop, m_clock, m_notifications, m_item);
    m_clock.insertAlarm(timer(7));
    m_loop.advance(1s);
    int performed = 0;
    view.setTarget([&] { ++performed; });
    m_item.press();
    EXPECT_EQ(performed, 1);

    std::string trace;
    const auto watch = [&](int halfSeconds) {
        for (int i = 0; i < halfSeconds; ++i) {
            m_loop.advance(500ms);
            trace += glance();
        }
    };
    view.stopFlashing();
    view.startFlashing();
    watch(2);
    view.startFlashing(); // again: nothing changes
    watch(4);
    m_loop.beginEventTracking();
    watch(4); // our menu is open
    m_loop.endEventTracking();
    watch(2);
    view.stopFlashing();
    trace += glance();
    m_loop.advance(100ms);
    trace += glance();
    // Standing still while the menu is open, then catching up with one flash.
    EXPECT_EQ(trace, "vOO..OOOOO.O.v");

    m_item.press();
    EXPECT_EQ(performed, 1) << "the target went with the flashing";
}

TEST_F(StatusViewTest, pressBringsTheMenuUpToDateBeforeItOpens) {
    QMenu menu;
    QList<int> popUps;
    const auto observation = m_notifications.addObserver(
        mainMenuWillAppearNotification, [&](const void*) { popUps << m_item.popUps; });
    StatusView view(m_loop, m_clock, m_notifications, m_item);
    m_item.press(); // before there is a menu
    view.setAlarmMenu(&menu);
    m_item.press();
    EXPECT_EQ(popUps, (QList<int>{0, 0}));
    EXPECT_EQ(m_item.popUps, 1);
}

} // namespace

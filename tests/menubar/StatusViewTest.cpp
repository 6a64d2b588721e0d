// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusView.h"

#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/RandomDays.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

class StatusViewTest : public ::testing::Test {
protected:
    [[nodiscard]] bool shows(int end, int duration) const {
        return m_item.shown() == StatusPicture().image({end, duration}, 22);
    }
    // One letter for each step: the full disc, nothing, or a wedge.
    [[nodiscard]] char glance() const { return shows(0, 60) ? 'O' : shows(0, 0) ? '.' : 'v'; }

    VirtualRunLoop m_loop{QDateTime({2026, 11, 24}, {10, 0, 0, 250})};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    FakeStatusItem m_item;
    StatusView m_view{m_loop, m_clock, m_notifications, m_item};
};

// It is to look as if it looked ten times a second, so no look at any time may find something new.
TEST(StatusViewDaysTest, lookAtAnyTimeFindsNothingNew) {
    int sent = 0;
    for (unsigned seed = 0; seed < 40; ++seed) {
        RandomDays days(seed);
        FakeStatusItem item;
        StatusView view(days.loop, days.clock, days.notifications, item);
        for (int step = 0; step < 60; ++step) {
            days.step();
            days.loop.advance(days.landing(100)); // changes in a row are shown together
            const auto shown = std::pair(item.iconsSent, item.toolTips.size());
            view.updateStatusView();
            EXPECT_EQ(shown, std::pair(item.iconsSent, item.toolTips.size()))
                << "seed " << seed << ", step " << step;
        }
        sent += item.iconsSent;
    }
    EXPECT_GT(sent, 2000) << "or nothing was seen";
}

TEST_F(StatusViewTest, tellsOfTheNextBreakAndCallsForOneThatIsUnseen) {
    BreakOutlook outlook{BreakOutlook::Phase::Working, m_loop.now().addSecs(1500)};
    m_view.showBreaks(outlook, false);
    m_loop.advance(100ms);
    EXPECT_EQ(m_item.toolTips.last(), u"Dorvane \u2013 "_qs + outlookText(outlook));
    outlook.isNear = true;
    m_view.showBreaks(outlook, false);
    EXPECT_TRUE(m_item.shown() == StatusPicture().image({0, 0, true}, 22));
    EXPECT_FALSE(shows(0, 0)) << "is marked";
    m_view.startFlashing();
    m_view.showBreaks({}, true);
    m_view.stopFlashing();
    EXPECT_TRUE(m_item.needsAttention) << "the alarm is answered, the break is not";
    m_view.showBreaks({}, false);
    EXPECT_FALSE(m_item.needsAttention);
}

TEST_F(StatusViewTest, tellsOfWhatRingsFirstAfterAPause) {
    for (const char* const time : {"11-25 07:00", "11-27 09:00"}) {
        const bool isDaily = m_clock.allAlarms().empty();
        const AlarmPtr alarm = AlarmOf{.title = isDaily ? "Up" : "Bus",
                                       .kind = Alarm::Dated,
                                       .time = time,
                                       .everyDay = isDaily}
                                   .alarm();
        if (isDaily)
            alarm->setHeldUntil(instantOf(at("11-26 00:00")));
        m_clock.insertAlarm(alarm);
        m_loop.advance(100ms);
        EXPECT_EQ(m_item.toolTips.last(), u"Thu, 7:00 \u2013 Up"_qs);
    }
    m_clock.allAlarms().back()->setHeldUntil(Instant::max());
    m_view.updateStatusView();
    EXPECT_EQ(m_item.toolTips.last(), u"Fri, 9:00 \u2013 Bus"_qs);
}

TEST_F(StatusViewTest, wakesWhenTheWedgeMovesAndSendsOnlyWhatChanged) {
    EXPECT_EQ(m_item.toolTips, QStringList{u"Dorvane"_qs});
    for (int i = 0; i < 50; ++i)
        m_clock.insertAlarm(
            AlarmOf{.title = "Tea\n& <b>cake</b>", .kind = Alarm::Dated, .time = "11-24 11:30"}
                .alarm());
    m_loop.runPending();
    EXPECT_EQ(m_item.iconsSent, 2) << "one pass for fifty changes";

    const std::int64_t before = m_loop.firings();
    m_loop.advance(30min);
    EXPECT_EQ(m_loop.firings(), before) << "the disc is full";
    m_loop.advance(10min);
    EXPECT_EQ(m_loop.firings() - before, 10) << "one a minute";
    EXPECT_EQ(m_item.iconsSent, 2 + 10);
    EXPECT_TRUE(shows(30, 50));
    EXPECT_EQ(m_item.toolTips.size(), 2 + 10) << "with the wedge";
    EXPECT_EQ(m_item.toolTips[1], u"Tue, 11:30 \u2013 Tea & <b>cake</b>"_qs);
    EXPECT_EQ(m_view.summary(), u"Tue, 11:30, in 50 min \u2013 Tea & <b>cake</b>"_qs);
}

TEST_F(StatusViewTest, flashesBetweenDiscAndNothingUntilItIsStopped) {
    m_clock.insertAlarm(AlarmOf{.minutes = 7}.alarm());
    m_loop.advance(1s);
    int performed = 0;
    m_view.setTarget([&] { ++performed; });
    m_item.press();
    EXPECT_EQ(performed, 1);

    std::string trace;
    const auto watch = [&](int halfSeconds) {
        for (int i = 0; i < halfSeconds; ++i) {
            m_loop.advance(500ms);
            trace += glance();
        }
    };
    m_view.stopFlashing();
    m_view.startFlashing();
    watch(2);
    m_view.startFlashing(); // again: nothing changes
    watch(4);
    m_loop.beginEventTracking();
    watch(4); // our menu is open
    m_loop.endEventTracking();
    watch(2);
    EXPECT_EQ(m_item.iconSizes, StatusItem::IconSizes::Few);
    m_view.stopFlashing();
    trace += glance();
    EXPECT_EQ(m_item.iconSizes, StatusItem::IconSizes::All);
    m_loop.advance(100ms);
    trace += glance();
    // Standing still while the menu is open, then catching up with one flash.
    EXPECT_EQ(trace, "vOO..OOOOO.O.v");

    m_item.press();
    EXPECT_EQ(performed, 1) << "the target went with the flashing";
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/AlarmMenuController.h"

#include "core/NotificationNames.h"
#include "tests/menubar/MenuFixture.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

class AlarmMenuControllerTest : public MenuFixture {};

TEST_F(AlarmMenuControllerTest, aTimerFromTheMenuToTheSecondRingAndItsEnd) {
    m_controller.createPreAlarm(45); // the library keeps the last one only
    m_controller.clearFromMenu(m_clock.allAlarms().front());
    const QImage idle = m_item.shown();
    choose({u"Timer..."_qs, u"1 min"_qs});
    ASSERT_EQ(m_clock.allAlarms().size(), 1u);
    const AlarmPtr timer = m_clock.allAlarms().front();
    loop.advance(200ms);
    EXPECT_NE(m_item.shown(), idle) << "the wedge";
    EXPECT_EQ(storedTitles(), QStringList{u"default"_qs});
    EXPECT_EQ(library.alarms()->front()->ringWithinUnits(), 1);

    loop.advance(60s);
    EXPECT_EQ(openWindows(), 1);
    windowOf(timer).snoozeButtonPressed();
    EXPECT_EQ(openWindows(), 0);
    loop.advance(5min);
    EXPECT_EQ(openWindows(), 1);
    loop.advance(5min); // unanswered
    EXPECT_TRUE(m_clock.allAlarms().empty());
    EXPECT_EQ(openWindows(), 0);
    // The tick in the last second before the due time rings.
    EXPECT_THAT(rings(), ElementsAre("59000 ping", "359000 ping"));
    EXPECT_EQ(m_told.join(u'|').toStdString(),
              "default rings|default snoozed|default rings|default unanswered");
}

TEST_F(AlarmMenuControllerTest, whatRepeatsRingsAgainAndWhatDoesNotIsGone) {
    const auto relative = [this](bool repeats) {
        const AlarmPtr alarm = timerAlarm(10);
        alarm->setShouldRepeat(repeats);
        return alarm;
    };
    const auto daily = [this](bool repeats) {
        const AlarmPtr alarm = datedAlarm(loop, QTime(8, 10));
        alarm->setSelRowNo(Alarm::Dated);
        alarm->setShouldUseEveryDay(repeats);
        return alarm;
    };
    const auto weekly = [this](WeekdaySet days, bool forever) {
        const AlarmPtr alarm = Alarm::initWithTime(at("2026-11-23 08:10"), {});
        alarm->setSelRowNo(Alarm::Weekly);
        alarm->setWeekdays(days);
        alarm->setShouldUseForever(forever);
        return alarm;
    };
    const struct {
        const char* kind;
        AlarmPtr alarm;
        const char* next; // nothing: it is gone
    } cases[] = {
        {"once in ten minutes", relative(false), nullptr},
        {"every ten minutes", relative(true), "2026-11-23 08:20"},
        {"once on a date", daily(false), nullptr},
        {"every day", daily(true), "2026-11-24 08:10"},
        {"every week", weekly({Weekday::Monday}, true), "2026-11-30 08:10"},
        {"once on a day", weekly({Weekday::Monday}, false), nullptr},
        {"once on each of two days", weekly({Weekday::Monday, Weekday::Wednesday}, false),
         "2026-11-25 08:10"},
    };
    for (const auto& each : cases)
        schedule(each.alarm, each.kind);
    loop.advance(10min);
    EXPECT_EQ(rings().size(), std::size(cases));
    for (const auto& each : cases) {
        ASSERT_TRUE(each.alarm->isTriggered()) << each.kind;
        windowOf(each.alarm).clearButtonPressed();
        const auto& running = m_clock.allAlarms();
        EXPECT_EQ(std::count(running.begin(), running.end(), each.alarm), each.next ? 1 : 0)
            << each.kind;
        EXPECT_EQ(each.alarm->time(instantNow(loop)),
                  at(each.next ? each.next : "2026-11-23 08:10"))
            << each.kind;
    }
    const AlarmPtr stored = library.alarms()->back();
    EXPECT_EQ(stored->time(instantNow(loop)), at("2026-11-25 08:10"))
        << "a weekday alarm moves on there as well";
    EXPECT_EQ(stored->weekdays(), WeekdaySet{Weekday::Wednesday});
}

TEST_F(AlarmMenuControllerTest, clearInTheMenuLeavesTheWindowAndDeleteTakesItAlong) {
    const AlarmPtr a = dated("a", 1);
    const AlarmPtr b = dated("b", 1);
    loop.advance(61s);
    EXPECT_EQ(openWindows(), 2);
    m_controller.clearFromMenu(a);
    EXPECT_EQ(openWindows(), 2);
    m_controller.deleteAlarm(b);
    EXPECT_EQ(openWindows(), 1);
    EXPECT_TRUE(m_clock.allAlarms().empty());
    windowOf(a).clearButtonPressed();
    EXPECT_EQ(m_told.join(u'|').toStdString(), "b rings|a rings|a cleared|b cleared");
}

// The panel's copy follows the library by itself.
TEST_F(AlarmMenuControllerTest, savingListsAnAlarmOnceAndDeletingItThereForgetsIt) {
    const auto listed = [this] {
        loop.advance(200ms);
        QStringList texts;
        for (const PanelMenuEntry& entry : m_item.panelMenu)
            texts << entry.text;
        return texts.mid(texts.indexOf(u"Inactive alarms:"_qs) + 1).filter(u"tea"_qs);
    };
    const AlarmPtr tea = dated("tea", 30);
    EXPECT_EQ(listed().size(), 0);
    int rebuilt = 0;
    const auto observation =
        notifications.addObserver(mainMenuWillAppearNotification, [&](const void*) { ++rebuilt; });
    m_controller.saveFromMenu(tea);
    m_controller.saveFromMenu(tea);
    EXPECT_EQ(rebuilt, 1);
    EXPECT_EQ(listed().size(), 1);
    m_controller.setAlarm(library.alarms()->front()); // starts the stored one again
    EXPECT_EQ(listed().size(), 1);
    m_controller.deleteAlarm(library.alarms()->front());
    EXPECT_EQ(listed().size(), 0);
    EXPECT_EQ(m_clock.allAlarms().size(), 2u) << "running alarms stay";
}

TEST_F(AlarmMenuControllerTest, oneAlarmHasOneEditorWhichMayBeClosedTwice) {
    const AlarmPtr tea = dated("tea", 30);
    m_controller.editAlarm(tea);
    m_controller.editAlarm(tea);
    m_controller.editAlarm(library.alarms()->front()); // the stored one, read anew each time
    m_controller.editAlarm(library.alarms()->front());
    ASSERT_EQ(openEditors().size(), 2);
    for (AlarmSetController* window : openEditors()) {
        window->reject();
        window->reject();
    }
    m_controller.editAlarm(tea);
    EXPECT_EQ(openEditors().size(), 1);
}

TEST_F(AlarmMenuControllerTest, settingWhatRingsEndsItsRingingFirst) {
    player.setFile(u"tea"_qs, {.duration = 60s});
    const AlarmPtr old = schedule(timerAlarm(1), "tea");
    loop.advance(61s);
    m_controller.editAlarm(old);
    AlarmSetController& window = *openEditors().front();
    window.findChild<QLineEdit*>(u"inTimeField"_qs)->setText(u"3"_qs);
    set(window);
    EXPECT_EQ(openWindows(), 0);
    loop.advance(10min);
    EXPECT_THAT(trace.events(), ElementsAre("59000 tea play", "61000 tea stop", "179000 tea play",
                                            "239000 tea finished"));
}

TEST_F(AlarmMenuControllerTest, anAlarmThatRangItsLastWhileItWasEditedRunsAsItWasSet) {
    const AlarmPtr old = schedule(timerAlarm(1), "tea");
    m_controller.editAlarm(old);
    loop.advance(61s);
    windowOf(old).clearButtonPressed();
    EXPECT_TRUE(m_clock.allAlarms().empty());
    set(*openEditors().front());
    loop.advance(61s);
    EXPECT_THAT(rings(), ElementsAre("59000 tea", "120000 tea"));
}

} // namespace

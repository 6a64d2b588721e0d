// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/AlarmMenuController.h"

#include "core/NotificationNames.h"
#include "tests/menubar/MenuFixture.h"

using namespace dorvane::testing;

namespace {

class AlarmMenuControllerTest : public MenuFixture {};

TEST_F(AlarmMenuControllerTest, aTimerFromTheMenuToTheSecondRingAndItsEnd) {
    m_controller.createPreAlarm(45); // the library keeps the last one only
    m_controller.clearFromMenu(m_clock.allAlarms().front());
    const QImage idle = m_item.shown();
    m_controller.createPreAlarm(1);
    ASSERT_EQ(m_clock.allAlarms().size(), 1u);
    const AlarmPtr timer = m_clock.allAlarms().front();
    loop.advance(200ms);
    EXPECT_NE(m_item.shown(), idle) << "the wedge";
    EXPECT_EQ(storedTitles(), QStringList{u"default"_qs});
    EXPECT_EQ(library.alarms()->front()->ringWithinUnits(), 1);

    loop.advance(60s);
    EXPECT_EQ(openWindows(), 1);
    QString due; // as the journal and whatever wakes the computer hear of it
    const auto changes = notifications.addObserver(alarmsDidChangeNotification, [&](const void*) {
        due = timer->time(instantNow(loop)).toString(u"mm:ss"_qs);
    });
    windowOf(timer).snoozeButtonPressed();
    EXPECT_EQ(due, u"06:00"_qs);
    EXPECT_EQ(openWindows(), 0);
    loop.advance(5min);
    EXPECT_EQ(openWindows(), 1);
    loop.advance(5min); // unanswered
    EXPECT_TRUE(m_clock.allAlarms().empty());
    EXPECT_EQ(openWindows(), 0);
    // The tick in the last second before the due time rings.
    EXPECT_THAT(trace.plays(), ElementsAre("59000 ping", "359000 ping"));
    EXPECT_EQ(m_told.join(u'|').toStdString(),
              "default rings|default snoozed|default rings|default unanswered");
}

TEST_F(AlarmMenuControllerTest, aWeekdayAlarmMovesOnInTheLibraryToo) {
    const AlarmPtr run = schedule({.title = "run",
                                   .kind = Alarm::Weekly,
                                   .time = "11-23 08:01",
                                   .days = {Weekday::Monday, Weekday::Wednesday}});
    loop.advance(61s);
    windowOf(run).clearButtonPressed();
    const AlarmPtr stored = library.alarms()->front();
    EXPECT_EQ(brief(stored->time(instantNow(loop))), "11-25 08:01+01");
    EXPECT_EQ(stored->weekdays(), WeekdaySet{Weekday::Wednesday});
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
    const AlarmPtr tea = timer("tea");
    EXPECT_EQ(listed().size(), 0);
    int rebuilt = 0;
    const auto observation =
        notifications.addObserver(mainMenuWillAppearNotification, [&](const void*) { ++rebuilt; });
    m_controller.saveFromMenu(tea);
    m_controller.saveFromMenu(tea);
    EXPECT_EQ(rebuilt, 1);
    EXPECT_EQ(listed().size(), 1);
    m_controller.deleteAlarm(library.alarms()->front());
    EXPECT_EQ(listed().size(), 0);
    EXPECT_EQ(m_clock.allAlarms().size(), 1u) << "running alarms stay";
}

TEST_F(AlarmMenuControllerTest, oneAlarmHasOneEditorWhichMayBeClosedTwice) {
    const AlarmPtr tea = timer("tea");
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
    const AlarmPtr old = timer("tea");
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
    const AlarmPtr old = timer("tea");
    m_controller.editAlarm(old);
    loop.advance(61s);
    windowOf(old).clearButtonPressed();
    EXPECT_TRUE(m_clock.allAlarms().empty());
    set(*openEditors().front());
    loop.advance(61s);
    EXPECT_THAT(trace.plays(), ElementsAre("59000 tea", "120000 tea"));
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/AlarmMenuController.h"

#include "core/AlarmArchive.h"
#include "core/AlarmContext.h"
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "core/StoredAlarms.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "platform/Appearance.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "tests/menubar/MenuAlarms.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeSpeechService.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/VirtualRunLoop.h"

#include <QApplication>

#include <gmock/gmock.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

class LightDesktop final : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return false; }
    void setChanged(std::function<void()>) override {}
};

// The whole front end on virtual time; only the panel, the sound and the disk are fakes.
class AlarmMenuControllerTest : public ::testing::Test {
protected:
    ~AlarmMenuControllerTest() override {
        for (const AlarmPtr& alarm : std::vector(m_clock.allAlarms()))
            m_controller.deleteAlarm(alarm);
        m_loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Triggers an entry of the panel's copy of the menu by the titles on the way to it.
    void choose(const QStringList& path) {
        m_loop.advance(200ms);
        QMenu* menu = m_item.exportedMenu;
        for (const QString& title : path)
            for (QAction* action : menu->actions())
                if (action->text() == title) {
                    action->menu() ? void(menu = action->menu()) : action->trigger();
                    break;
                }
        m_loop.runPending();
    }

    AlarmPtr weekly(const char* title, const char* time, WeekdaySet days, bool forever) {
        const AlarmPtr alarm = Alarm::initWithTime(m_loop, at(time), QString::fromLatin1(title));
        alarm->setSelRowNo(Alarm::Weekly);
        alarm->setWeekdays(days);
        alarm->setShouldUseForever(forever);
        alarm->setSnoozeTime(5);
        m_library.put(*alarm);
        m_controller.scheduleAlarm(alarm);
        return alarm;
    }

    static SnoozeWindowController& windowOf(const AlarmPtr& alarm) {
        return static_cast<SnoozeWindowController&>(*alarm->context());
    }

    static int openWindows() {
        int open = 0;
        for (const QWidget* widget : QApplication::topLevelWidgets())
            open += widget->objectName() == QStringLiteral("SnoozeWindowController") &&
                    widget->isVisible();
        return open;
    }

    VirtualRunLoop m_loop{at("2026-11-23 08:00")}; // a Monday
    Trace m_trace{m_loop};
    NotificationCenter m_notifications;
    MemoryDefaults m_defaults;
    LibplistFormat m_format;
    AlarmArchive m_archive{m_format, m_loop};
    StoredAlarms m_library{m_defaults, m_archive, m_loop};
    Clock m_clock{m_loop, m_notifications};
    FakeStatusItem m_item;
    LightDesktop m_appearance;
    Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    FakeSoundPlayer m_player{m_loop, m_trace};
    SoundRepeat m_repeat{m_loop, m_player};
    FakeSpeechService m_speech{m_loop, m_trace};
    AlarmMenuController m_controller{
        {.runLoop = m_loop,
         .notifications = m_notifications,
         .clock = m_clock,
         .storedAlarms = m_library,
         .statusItem = m_item,
         .appearance = m_appearance,
         .bundle = m_bundle,
         .player = m_player,
         .repeat = m_repeat,
         .speech = m_speech,
         .isSystemSound = [](const QString& path) { return path == QStringLiteral("ping"); },
         .makeEditor = {},
         .presetSoundPath = [] { return QStringLiteral("ping"); },
         .openPrefs = {},
         .showGoogleHelp = {},
         .terminate = [this] { m_trace.add(QStringLiteral("quit")); }}};
};

TEST_F(AlarmMenuControllerTest, aTimerFromTheMenuToTheSecondRingAndItsEnd) {
    const QImage idle = m_item.shown();
    choose({QStringLiteral("Timer..."), QStringLiteral("1 min")});
    ASSERT_EQ(m_clock.allAlarms().size(), 1u);
    const AlarmPtr timer = m_clock.allAlarms().front();
    m_loop.advance(200ms);
    EXPECT_NE(m_item.shown(), idle) << "the wedge";
    ASSERT_EQ(alarmTitles(*m_library.alarms()), QStringList{QStringLiteral("default")});

    m_loop.advance(60s);
    EXPECT_EQ(openWindows(), 1);
    windowOf(timer).snoozeButtonPressed();
    EXPECT_EQ(openWindows(), 0);
    EXPECT_EQ(timer->time(), at("2026-11-23 08:06"));
    m_loop.advance(5min);
    EXPECT_EQ(openWindows(), 1);
    windowOf(timer).clearButtonPressed();
    m_loop.advance(5min);
    EXPECT_TRUE(m_clock.allAlarms().empty());
    EXPECT_EQ(openWindows(), 0);
    std::vector<std::string> plays;
    for (const std::string& event : m_trace.events())
        if (event.ends_with("ping play"))
            plays.push_back(event);
    // The tick in the last second before the due time rings.
    EXPECT_THAT(plays, ElementsAre("60000 ping play", "61000 ping play", "62000 ping play",
                                   "360000 ping play", "361000 ping play", "362000 ping play"));
}

TEST_F(AlarmMenuControllerTest, aSecondTimerTakesTheLibrarysPlaceOfTheFirst) {
    m_controller.createPreAlarm(45);
    m_controller.createPreAlarm(2);
    EXPECT_EQ(m_clock.allAlarms().size(), 2u);
    ASSERT_EQ(m_library.alarms()->size(), 1u);
    EXPECT_EQ(m_library.alarms()->front()->ringWithinUnits(), 2);
}

TEST_F(AlarmMenuControllerTest, aWeekdayAlarmMovesOnInTheClockAndInTheLibrary) {
    const AlarmPtr alarm =
        weekly("swim", "2026-11-23 08:01", {Weekday::Monday, Weekday::Wednesday}, false);
    m_loop.advance(61s);
    ASSERT_EQ(openWindows(), 1);
    windowOf(alarm).clearButtonPressed();
    EXPECT_EQ(alarm->time(), at("2026-11-25 08:01"));
    EXPECT_EQ(alarm->weekdays(), WeekdaySet{Weekday::Wednesday});
    EXPECT_EQ(m_library.alarms()->front()->time(), at("2026-11-25 08:01"));
    EXPECT_EQ(m_clock.allAlarms().size(), 1u);
}

TEST_F(AlarmMenuControllerTest, clearInTheMenuLeavesTheWindowAndDeleteTakesItAlong) {
    const AlarmPtr a = datedAlarm(m_loop, QTime(8, 1), QStringLiteral("a"));
    const AlarmPtr b = datedAlarm(m_loop, QTime(8, 1), QStringLiteral("b"));
    for (const AlarmPtr& alarm : {a, b}) {
        alarm->setSnoozeTime(5);
        m_controller.scheduleAlarm(alarm);
    }
    m_loop.advance(61s);
    EXPECT_EQ(openWindows(), 2);
    m_controller.clearFromMenu(a);
    EXPECT_EQ(openWindows(), 2);
    m_controller.deleteAlarm(b);
    EXPECT_EQ(openWindows(), 1);
    EXPECT_TRUE(m_clock.allAlarms().empty());
    a->context()->close();
}

TEST_F(AlarmMenuControllerTest, savingListsAnAlarmOnceAndDeletingItThereForgetsIt) {
    const AlarmPtr tea = datedAlarm(m_loop, QTime(18, 0), QStringLiteral("tea"));
    m_library.put(*tea);
    m_controller.scheduleAlarm(tea);
    int rebuilt = 0;
    const auto observation = m_notifications.addObserver(mainMenuWillAppearNotification,
                                                         [&](const void*) { ++rebuilt; });
    m_controller.saveFromMenu(tea);
    m_controller.saveFromMenu(tea);
    EXPECT_EQ(rebuilt, 1);
    const AlarmPtr stored = m_library.alarms()->front();
    EXPECT_TRUE(stored->isExisInActiveAlarmList());

    m_controller.setAlarm(stored); // starts the stored one again
    EXPECT_EQ(m_clock.allAlarms().size(), 2u);
    m_controller.deleteAlarm(m_library.alarms()->front());
    EXPECT_TRUE(m_library.alarms()->empty());
    EXPECT_EQ(m_clock.allAlarms().size(), 2u) << "running alarms stay";
}

TEST_F(AlarmMenuControllerTest, aHundredAlarmsOfOneSecondEachRing) {
    for (int i = 0; i < 100; ++i) {
        const AlarmPtr alarm = datedAlarm(m_loop, QTime(8, 1), QString::number(i));
        alarm->setSnoozeTime(5);
        m_controller.scheduleAlarm(alarm);
    }
    m_loop.advance(61s);
    EXPECT_EQ(openWindows(), 100);
    m_loop.advance(6min);
    EXPECT_EQ(openWindows(), 0) << "unanswered, each is cleared";
    EXPECT_TRUE(m_clock.allAlarms().empty());
}

} // namespace

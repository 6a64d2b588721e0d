// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/AlarmMenuController.h"

#include "core/AlarmContext.h"
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "platform/Appearance.h"
#include "tests/editor/EditorFixture.h"
#include "tests/menubar/MenuAlarms.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeStatusItem.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

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

// The whole front end on virtual time; only the panel and the sound are fakes. Alarms play their
// titles, so that the trace tells what rings.
class AlarmMenuControllerTest : public ::testing::Test, protected EditorFixture {
protected:
    AlarmMenuControllerTest() : EditorFixture(at("2026-11-23 08:00")) {} // a Monday
    ~AlarmMenuControllerTest() override {
        for (const AlarmPtr& alarm : std::vector(m_clock.allAlarms()))
            m_controller.deleteAlarm(alarm);
        loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    AlarmPtr schedule(const AlarmPtr& alarm, const char* title) {
        alarm->setTitle(QString::fromLatin1(title));
        alarm->setSnoozeTime(5);
        alarm->setIsPlaySound(true);
        alarm->setSoundPath(alarm->title());
        library.put(*alarm);
        m_controller.scheduleAlarm(alarm);
        return alarm;
    }
    AlarmPtr dated(const char* title, int minute) {
        return schedule(datedAlarm(loop, QTime(8, minute)), title);
    }

    // Chooses an entry of the panel's menu by the titles on the way to it.
    void choose(const QStringList& path) {
        loop.advance(200ms);
        const std::vector<PanelMenuEntry>* level = &m_item.panelMenu;
        for (const QString& title : path)
            for (const PanelMenuEntry& entry : *level)
                if (entry.text == title) {
                    entry.chosen ? loop.defer(entry.chosen) : void(level = &entry.children);
                    break;
                }
        loop.runPending();
    }

    static SnoozeWindowController& windowOf(const AlarmPtr& alarm) {
        return static_cast<SnoozeWindowController&>(*alarm->context());
    }
    template<typename Window = QWidget>
    static QList<Window*> open(const char* name) {
        QList<Window*> found;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QLatin1String(name) && widget->isVisible())
                found << static_cast<Window*>(widget);
        return found;
    }
    static qsizetype openWindows() { return open("SnoozeWindowController").size(); }
    static QList<AlarmSetController*> openEditors() {
        return open<AlarmSetController>("AlarmSetController");
    }
    static void set(AlarmSetController& window) {
        for (QPushButton* button : window.findChildren<QPushButton*>())
            if (button->text() == QStringLiteral("&Set"))
                button->click();
    }

    // What began to sound, and when: "60000 tea".
    std::vector<std::string> rings() const {
        std::vector<std::string> found;
        for (const std::string& event : trace.events())
            if (event.ends_with(" play"))
                found.push_back(event.substr(0, event.size() - 5));
        return found;
    }

    Clock m_clock{loop, notifications};
    SoundRepeat m_repeat{loop, player};
    FakeStatusItem m_item;
    LightDesktop m_appearance;
    AlarmMenuController m_controller{
        {.runLoop = loop,
         .notifications = notifications,
         .clock = m_clock,
         .storedAlarms = library,
         .statusItem = m_item,
         .appearance = m_appearance,
         .bundle = bundle,
         .player = player,
         .repeat = m_repeat,
         .speech = speech,
         .isSystemSound = [](const QString&) { return false; },
         .makeEditor = [this] { return std::make_unique<AlarmSetController>(services()); },
         .presetSoundPath = [] { return QStringLiteral("ping"); },
         .sharedRespito = {},
         .breakCycle = {},
         .breaksRun = {},
         .openPrefs = {},
         .showGoogleHelp = {},
         .terminate = {}}};
};

TEST_F(AlarmMenuControllerTest, aTimerFromTheMenuToTheSecondRingAndItsEnd) {
    m_controller.createPreAlarm(45); // the library keeps the last one only
    m_controller.clearFromMenu(m_clock.allAlarms().front());
    const QImage idle = m_item.shown();
    choose({QStringLiteral("Timer..."), QStringLiteral("1 min")});
    ASSERT_EQ(m_clock.allAlarms().size(), 1u);
    const AlarmPtr timer = m_clock.allAlarms().front();
    loop.advance(200ms);
    EXPECT_NE(m_item.shown(), idle) << "the wedge";
    EXPECT_EQ(storedTitles(), QStringList{QStringLiteral("default")});
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
    EXPECT_THAT(rings(), ElementsAre("60000 ping", "360000 ping"));
}

TEST_F(AlarmMenuControllerTest, whatRepeatsRingsAgainAndWhatDoesNotIsGone) {
    const auto relative = [this](bool repeats) {
        const AlarmPtr alarm = timerAlarm(loop, 10);
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
        const AlarmPtr alarm = Alarm::initWithTime(loop, at("2026-11-23 08:10"), {});
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
        EXPECT_EQ(each.alarm->time(), at(each.next ? each.next : "2026-11-23 08:10")) << each.kind;
    }
    const AlarmPtr stored = library.alarms()->back();
    EXPECT_EQ(stored->time(), at("2026-11-25 08:10")) << "a weekday alarm moves on there as well";
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
    a->context()->close();
}

// The panel's copy follows the library by itself.
TEST_F(AlarmMenuControllerTest, savingListsAnAlarmOnceAndDeletingItThereForgetsIt) {
    const auto listed = [this] {
        loop.advance(200ms);
        QStringList texts;
        for (const PanelMenuEntry& entry : m_item.panelMenu)
            texts << entry.text;
        return texts.mid(texts.indexOf(QStringLiteral("Inactive alarms:")) + 1)
            .filter(QStringLiteral("tea"));
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
    player.setFile(QStringLiteral("tea"), {.duration = 60s});
    const AlarmPtr old = schedule(timerAlarm(loop, 1), "tea");
    loop.advance(61s);
    m_controller.editAlarm(old);
    AlarmSetController& window = *openEditors().front();
    window.findChild<QLineEdit*>(QStringLiteral("inTimeField"))->setText(QStringLiteral("3"));
    set(window);
    EXPECT_EQ(openWindows(), 0);
    loop.advance(10min);
    EXPECT_THAT(trace.events(), ElementsAre("60000 tea play", "61000 tea stop", "180000 tea play",
                                            "240000 tea finished"));
}

TEST_F(AlarmMenuControllerTest, anAlarmThatRangItsLastWhileItWasEditedRunsAsItWasSet) {
    const AlarmPtr old = schedule(timerAlarm(loop, 1), "tea");
    m_controller.editAlarm(old);
    loop.advance(61s);
    windowOf(old).clearButtonPressed();
    EXPECT_TRUE(m_clock.allAlarms().empty());
    set(*openEditors().front());
    loop.advance(61s);
    EXPECT_THAT(rings(), ElementsAre("60000 tea", "121000 tea"));
}

} // namespace

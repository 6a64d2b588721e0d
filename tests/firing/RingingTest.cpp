// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmContext.h"
#include "firing/AlarmRinger.h"
#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SnoozeWindowControllerDelegate.h"
#include "firing/SnoozeWindowStack.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"
#include "firing/WindowPlace.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeSpeechService.h"
#include "tests/support/LogCapture.h"
#include "tests/support/VirtualRunLoop.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

// Rings alarms with real windows; everything that happens goes to one trace.
class RingingTest : public ::testing::Test,
                    protected FlashingIcon,
                    protected WindowPlace,
                    protected SnoozeWindowControllerDelegate {
protected:
    ~RingingTest() override {
        for (const AlarmPtr& alarm : m_alarms)
            if (alarm->context())
                alarm->context()->close();
        m_loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void startFlashing() override { m_trace.add(QStringLiteral("flash")); }
    void stopFlashing() override {}
    [[nodiscard]] QPoint placeFor(QSize) const override { return {300, 40}; }
    void snoozeWindowDidSnooze(SnoozeWindowController& window) override {
        m_trace.add(window.windowAlarm()->title() + QStringLiteral(" snoozed"));
    }
    void snoozeWindowDidClear(SnoozeWindowController& window) override {
        m_trace.add(window.windowAlarm()->title() + QStringLiteral(" cleared"));
        window.close();
    }

    AlarmPtr alarm(const char* title, const char* path, bool fade = false) {
        const AlarmPtr alarm =
            Alarm::initWithTime(m_loop, at("2026-11-24 07:30"), QString::fromLatin1(title));
        alarm->setIsTimeWithDate(true);
        alarm->setSnoozeTime(5);
        alarm->setIsPlaySound(path != nullptr);
        alarm->setSoundPath(QString::fromLatin1(path ? path : "unused"));
        alarm->setShouldFadeIn(fade);
        m_alarms.push_back(alarm);
        return alarm;
    }

    AlarmPtr speakingAlarm(const char* title, const char* voice, const char* path) {
        const AlarmPtr speaking = alarm(title, path);
        speaking->setIsSpeakAlarmName(true);
        speaking->setVoiceName(QString::fromLatin1(voice));
        return speaking;
    }

    static QList<QWidget*> windows() {
        QList<QWidget*> visible;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QStringLiteral("SnoozeWindowController") &&
                widget->isVisible())
                visible << widget;
        return visible;
    }

    static QWidget* windowOf(const char* title) {
        for (QWidget* window : windows())
            if (window->accessibleName().startsWith(QLatin1String(title)))
                return window;
        ADD_FAILURE() << "no window of " << title;
        return nullptr;
    }

    VirtualRunLoop m_loop{at("2026-11-24 07:30")};
    Trace m_trace{m_loop};
    FakeSoundPlayer m_player{m_loop, m_trace};
    SoundRepeat m_repeat{m_loop, m_player};
    FakeSpeechService m_speech{m_loop, m_trace};
    TextSpeaker m_speaker{m_speech};
    AlarmRinger m_ringer{{m_loop, m_player, m_repeat, m_speaker, *this, *this, *this,
                          [](const QString& path) { return path == QStringLiteral("ping"); }}};
    std::vector<AlarmPtr> m_alarms;
};

TEST_F(RingingTest, alertSoundPlaysThreeTimesWhateverTheUserDoes) {
    const AlarmPtr tea = alarm("tea", "ping");
    m_ringer.activateAlarm(tea);
    EXPECT_TRUE(tea->isTriggered()) << "before anything else can tick it again";
    m_loop.advance(500ms);
    EXPECT_EQ(windows().size(), 1);
    m_ringer.deactivateAlarm(tea);
    m_loop.advance(10s);
    EXPECT_THAT(m_trace.events(),
                ElementsAre("0 flash", "0 ping play", "1000 ping finished", "1000 ping play",
                            "2000 ping finished", "2000 ping play", "3000 ping finished"));
}

TEST_F(RingingTest, otherSoundPlaysOnceAndStopsWithItsAlarmOrTheNext) {
    m_player.setFile(QStringLiteral("long"), {.duration = 60s});
    m_player.setFile(QStringLiteral("other"), {.duration = 3s});
    m_ringer.activateAlarm(alarm("a", "long"));
    m_loop.advance(1s);
    const AlarmPtr b = alarm("b", "other");
    m_ringer.activateAlarm(b);
    m_loop.advance(1s);
    m_ringer.deactivateAlarm(b);
    m_loop.advance(5s);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 long play", "0 flash", "1000 long stop",
                                              "1000 other play", "1000 flash", "2000 other stop"));
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST_F(RingingTest, fadeOptionCutsALongSoundAtTwentySeconds) {
    m_player.setFile(QStringLiteral("long"), {.duration = 60s});
    m_ringer.activateAlarm(alarm("a", "long", true));
    m_loop.advance(30s);
    EXPECT_EQ(m_trace.events().back(), "20000 long stop");
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST_F(RingingTest, spokenTitleComesBeforeTheSoundOfAnAlarmThatStillRings) {
    m_player.setFile(QStringLiteral("song"), {.duration = 2s});
    const AlarmPtr snoozed = speakingAlarm("tea", "Zoe", "song");
    m_ringer.activateAlarm(snoozed);
    m_loop.advance(500ms);
    m_ringer.deactivateAlarm(snoozed);
    // Announcements overlap, and each alarm sounds after its own.
    m_ringer.activateAlarm(speakingAlarm("cake", "Tom & Tim", "song"));
    m_loop.advance(400ms);
    m_ringer.activateAlarm(speakingAlarm("nap", "Anna", "ping"));
    m_ringer.activateAlarm(speakingAlarm("no voice chosen", "", "rain"));
    m_loop.advance(1500ms);
    EXPECT_THAT(m_trace.events(),
                ElementsAre("0 flash", "0 Zoe says tea", "500 Tom & Tim says cake", "500 flash",
                            "900 Anna says nap", "900 flash", "900 rain play", "900 flash",
                            "1000 Zoe said tea", "1500 Tom & Tim said cake", "1500 rain stop",
                            "1500 song play", "1900 Anna said nap", "1900 song stop",
                            "1900 ping play"));
}

TEST_F(RingingTest, preparedAlarmRingsAtOnceAndAsItIsThen) {
    for (const char* path : {"song", "other"})
        m_player.setFile(QString::fromLatin1(path), {.duration = 2s, .loadDelay = 3s});
    const AlarmPtr tea = alarm("tea", "song");
    const AlarmPtr cake = alarm("cake", "song");
    for (const AlarmPtr& soon : {tea, cake, speakingAlarm("nap", "Zoe", nullptr)})
        m_ringer.prepareAlarm(soon);
    m_loop.advance(10s);
    m_ringer.activateAlarm(tea);
    m_loop.advance(5s);
    cake->setSoundPath(QStringLiteral("other"));
    m_ringer.activateAlarm(cake);
    m_loop.advance(6s);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 Zoe learns nap", "10000 song play", "10000 flash",
                                              "12000 song finished", "15000 other play",
                                              "15000 flash", "20000 other finished"));
    EXPECT_EQ(m_player.sounds().size(), 1u) << "nobody has taken the song";
    m_loop.advance(10s);
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST_F(RingingTest, silentAndUnplayableAlarmsStillGetTheirWindowAndThoseGoneBeforeTheirTurnDoNot) {
    const LogCapture log;
    m_player.setFile(QStringLiteral("gone"), {.isPlayable = false});
    m_ringer.activateAlarm(alarm("silent", nullptr));
    m_ringer.activateAlarm(alarm("gone", "gone"));
    m_player.hasServer = false;
    m_ringer.activateAlarm(alarm("no server", "ping"));
    m_ringer.activateAlarm(speakingAlarm("no voice", "Gone", "ping"));
    m_ringer.activateAlarm(alarm("cleared", nullptr));
    m_ringer.deactivateAlarm(m_alarms.back());
    m_loop.advance(1s);
    EXPECT_EQ(windows().size(), 4);
    EXPECT_TRUE(log.messages().contains(
        QStringLiteral("dorvane.firing: cannot speak: the voice Gone is not installed")));
    EXPECT_THAT(m_trace.events(), ElementsAre("0 flash", "0 gone refused", "0 flash", "0 flash",
                                              "0 flash", "0 ping refused"));
}

TEST_F(RingingTest, eachWindowAnswersForItsOwnAlarmAndAnUnansweredOneClearsIt) {
    const AlarmPtr noSnooze = alarm("c", nullptr);
    noSnooze->setSnoozeTime(0); // must not vanish before it was seen
    for (const AlarmPtr& each : {alarm("a", nullptr), alarm("b", nullptr), noSnooze})
        m_ringer.activateAlarm(each);
    m_loop.advance(1s);
    m_trace.clear();
    QTest::mouseClick(windowOf("a")->findChild<QPushButton*>(QStringLiteral("snoozeButton")),
                      Qt::LeftButton);
    m_loop.advance(10min);
    // The answered window stays until its delegate closes it, but counts no longer.
    EXPECT_THAT(m_trace.events(),
                ElementsAre("1000 a snoozed", "60000 c cleared", "300000 b cleared"));
    EXPECT_EQ(windows(), QList<QWidget*>{windowOf("a")});
}

TEST_F(RingingTest, windowShowsATitleOfAnyLengthInTwoLines) {
    const QString word = QStringLiteral("Donaudampfschifffahrt");
    const struct {
        QString title;
        QString shown; // begins so
        bool isCut = false;
    } cases[] = {
        {.title = QStringLiteral("<b>Tea</b> & cake"),
         .shown = QStringLiteral("<b>Tea</b> & cake")},
        {.title = QString(), .shown = QString()},
        {.title = word.repeated(2) + QStringLiteral(" now"), .shown = word},
        {.title = word.repeated(500), .shown = word, .isCut = true},
        {.title = QStringLiteral("take the bins out ").repeated(20),
         .shown = QStringLiteral("take the bins out take"),
         .isCut = true},
        {.title = QStringLiteral("\u8d77\u5e8a").repeated(80),
         .shown = QStringLiteral("\u8d77\u5e8a"),
         .isCut = true},
    };
    for (const auto& each : cases) {
        const AlarmPtr titled = alarm("", nullptr);
        titled->setTitle(each.title);
        m_ringer.activateAlarm(titled);
        m_loop.advance(1s);
        const QWidget& window = *windows().front();
        const auto label = window.findChild<QLabel*>(QStringLiteral("titleLabel"));
        const std::string shown = label->text().toStdString();
        EXPECT_TRUE(label->text().startsWith(each.shown)) << shown;
        EXPECT_EQ(label->text().endsWith(u'\u2026'), each.isCut) << shown;
        EXPECT_EQ(label->toolTip().isEmpty(), !each.isCut) << shown;
        EXPECT_LE(label->text().count(u'\n'), 1) << shown;
        EXPECT_LE(label->fontMetrics().size(0, label->text()).width(), label->width()) << shown;
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("timeLabel"))->text(),
                  QStringLiteral("Tue, 7:30"));
        titled->context()->close();
    }
}

TEST_F(RingingTest, windowsOfOneSizeHideNothingOfEachOtherAndUseEveryPlaceAgain) {
    m_ringer.activateAlarm(alarm("a", nullptr));
    m_loop.advance(1s);
    const QRect first = windowOf("a")->geometry();
    EXPECT_EQ(first.topLeft(), QPoint(300, 40));
    for (const char* title : {"b", "c", "d", "e", "f with a title of two lines, or nearly so"})
        m_ringer.activateAlarm(alarm(title, nullptr));
    m_loop.advance(1s);
    QRegion seen;
    for (const QWidget* window : windows()) {
        EXPECT_EQ(window->size(), first.size());
        EXPECT_TRUE(window->screen()->geometry().contains(window->geometry()));
        EXPECT_FALSE(seen.intersects(window->geometry()));
        seen += window->geometry();
    }
    m_alarms.front()->context()->close();
    m_ringer.activateAlarm(alarm("g", nullptr));
    m_loop.advance(1s);
    EXPECT_EQ(windowOf("g")->geometry(), first);
}

// What somebody is typing when the keyboard goes to the next window does not press that one.
TEST_F(RingingTest, keyboardGoesFromAnAnsweredWindowToTheNext) {
    for (const char* title : {"a", "b"})
        m_ringer.activateAlarm(alarm(title, nullptr));
    m_loop.advance(1s);
    m_trace.clear();
    windowOf("a")->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("a")));
    m_ringer.activateAlarm(alarm("c", nullptr));
    m_loop.advance(1s);
    EXPECT_TRUE(windowOf("a")->isActiveWindow()) << "the new one does not take it";
    QTest::mouseClick(windowOf("a")->findChild<QPushButton*>(QStringLiteral("clearButton")),
                      Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("b")));
    QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Space);
    m_loop.advance(499ms);
    QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Space);
    m_loop.advance(500ms);
    QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Space);
    EXPECT_THAT(m_trace.events(), ElementsAre("1000 flash", "2000 a cleared", "2999 b snoozed"));
}

TEST_F(RingingTest, keysThatWereMeantForAnotherWindowPressNothing) {
    const struct {
        const char* name;
        std::vector<RunLoop::Milliseconds> presses; // after the window came up
        Qt::Key key = Qt::Key_Space;
        int answer = -1; // when it was snoozed, in milliseconds
    } cases[] = {
        {.name = "at once", .presses = {0ms}},
        {.name = "within half a second", .presses = {499ms}, .key = Qt::Key_Return},
        {.name = "typing goes on", .presses = {200ms, 500ms, 900ms, 1200ms}},
        {.name = "after half a second", .presses = {500ms}, .answer = 500},
        {.name = "return after a pause",
         .presses = {100ms, 600ms},
         .key = Qt::Key_Return,
         .answer = 600},
        {.name = "escape too soon", .presses = {100ms}, .key = Qt::Key_Escape},
        {.name = "escape", .presses = {700ms}, .key = Qt::Key_Escape, .answer = 700},
    };
    SnoozeWindowStack stack(*this);
    for (const auto& each : cases) {
        const auto start = m_loop.uptime();
        m_trace.clear();
        const auto controller =
            SnoozeWindowController::showCloseTo(stack, m_loop, *this, alarm("tea", nullptr));
        EXPECT_TRUE(QTest::qWaitForWindowActive(windowOf("tea")));
        for (const auto press : each.presses) {
            m_loop.advance(press - (m_loop.uptime() - start));
            QTest::keyClick(windowOf("tea")->focusWidget(), each.key);
        }
        std::vector<std::string> expected;
        if (each.answer >= 0)
            expected.push_back(std::to_string(start.count() + each.answer) + " tea snoozed");
        EXPECT_EQ(m_trace.events(), expected) << each.name;
        controller->close();
        m_loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace

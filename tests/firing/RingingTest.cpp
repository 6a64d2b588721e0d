// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmContext.h"
#include "firing/AlarmRinger.h"
#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SnoozeWindowControllerDelegate.h"
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
    m_loop.advance(19'999ms);
    EXPECT_EQ(m_player.sounds().size(), 1u);
    m_loop.advance(2ms);
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

TEST_F(RingingTest, alarmWithAVoiceThatIsNotInstalledIsSilentAndCanStillBeAnswered) {
    const LogCapture log;
    const AlarmPtr tea = speakingAlarm("tea", "Gone", "ping");
    m_ringer.activateAlarm(tea);
    m_loop.advance(10s);
    EXPECT_EQ(windows().size(), 1);
    EXPECT_TRUE(tea->isTriggered());
    m_ringer.deactivateAlarm(tea);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 flash"));
    EXPECT_TRUE(log.messages().contains(
        QStringLiteral("dorvane.firing: cannot speak: the voice Gone is not installed")));
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

TEST_F(RingingTest, silentAndUnplayableAlarmsStillGetTheirWindowAndTheFlashing) {
    m_player.setFile(QStringLiteral("gone"), {.isPlayable = false});
    m_ringer.activateAlarm(alarm("silent", nullptr));
    m_ringer.activateAlarm(alarm("gone", "gone"));
    m_player.hasServer = false;
    m_ringer.activateAlarm(alarm("no server", "ping"));
    m_loop.advance(1s);
    EXPECT_EQ(windows().size(), 3);
    EXPECT_EQ(std::count(m_trace.events().begin(), m_trace.events().end(), "0 flash"), 3);
}

TEST_F(RingingTest, alarmThatIsGoneBeforeItsTurnDoesNotRing) {
    m_ringer.activateAlarm(alarm("a", nullptr));
    const AlarmPtr b = alarm("b", nullptr);
    m_ringer.activateAlarm(b);
    m_ringer.deactivateAlarm(b);
    m_loop.advance(1s);
    EXPECT_EQ(windows().size(), 1);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 flash"));
}

TEST_F(RingingTest, eachWindowAnswersForItsOwnAlarmAndAnUnansweredOneClearsIt) {
    m_ringer.activateAlarm(alarm("a", nullptr));
    m_ringer.activateAlarm(alarm("b", nullptr));
    m_loop.advance(1s);
    m_trace.clear();
    for (QWidget* window : windows())
        if (window->accessibleName() == QStringLiteral("a"))
            QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("snoozeButton")),
                              Qt::LeftButton);
    m_loop.advance(299s - 1ms);
    EXPECT_THAT(m_trace.events(), ElementsAre("1000 a snoozed"));
    m_loop.advance(1ms);
    // The answered window stays until its delegate closes it, but counts no longer.
    EXPECT_THAT(m_trace.events(), ElementsAre("1000 a snoozed", "300000 b cleared"));
    EXPECT_EQ(windows().size(), 1);
}

TEST_F(RingingTest, windowShowsTimeAndTitleOfAnyLengthAsPlainText) {
    const AlarmPtr tea = alarm("<b>Tea</b>", nullptr);
    m_ringer.activateAlarm(tea);
    m_ringer.activateAlarm(alarm(QByteArray(10'000, 'x').constData(), nullptr));
    m_loop.advance(1s);
    ASSERT_EQ(windows().size(), 2);
    for (QWidget* window : windows()) {
        EXPECT_LE(window->width(), 400);
        EXPECT_LE(window->height(), 260);
        EXPECT_EQ(window->pos(), QPoint(300, 40));
        const auto title = window->findChild<QLabel*>(QStringLiteral("titleLabel"));
        if (window->accessibleName() == tea->title()) {
            EXPECT_EQ(title->text(), tea->title());
        }
        EXPECT_EQ(title->textFormat(), Qt::PlainText);
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("timeLabel"))->text(),
                  QStringLiteral("Tue, 7:30"));
    }
}

TEST_F(RingingTest, keysThatWereMeantForAnotherWindowPressNothing) {
    struct Case {
        const char* name;
        std::vector<RunLoop::Milliseconds> presses; // after the window came up
        Qt::Key key;
        const char* answer;
    };
    const Case cases[] = {
        {"at once", {0ms}, Qt::Key_Space, nullptr},
        {"within half a second", {499ms}, Qt::Key_Return, nullptr},
        {"typing goes on", {200ms, 500ms, 900ms, 1200ms}, Qt::Key_Space, nullptr},
        {"space after half a second", {500ms}, Qt::Key_Space, "500 tea snoozed"},
        {"return after a pause", {100ms, 600ms}, Qt::Key_Return, "600 tea snoozed"},
        {"escape too soon", {100ms}, Qt::Key_Escape, nullptr},
        {"escape", {700ms}, Qt::Key_Escape, "700 tea snoozed"},
    };
    for (const Case& c : cases) {
        const AlarmPtr tea = alarm("tea", nullptr);
        m_trace.clear();
        const auto start = m_loop.uptime();
        const auto controller = SnoozeWindowController::showCloseTo(*this, m_loop, *this, tea);
        EXPECT_TRUE(QTest::qWaitForWindowActive(windows().first()));
        for (const auto press : c.presses) {
            m_loop.advance(press - (m_loop.uptime() - start));
            QTest::keyClick(windows().first()->focusWidget(), c.key);
        }
        std::vector<std::string> answers;
        for (const std::string& event : m_trace.events())
            answers.push_back(std::to_string(std::stoi(event) - start.count()) +
                              event.substr(event.find(' ')));
        if (c.answer)
            EXPECT_THAT(answers, ElementsAre(c.answer)) << c.name;
        else
            EXPECT_TRUE(answers.empty()) << c.name;
        controller->close();
        m_loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(windows().isEmpty());
    }
}

} // namespace

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
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeSoundOutput.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

// Rings alarms with real windows; everything that happens goes to one trace.
class RingingTest : public FakeDesktopTest,
                    protected FlashingIcon,
                    protected WindowPlace,
                    protected SnoozeWindowControllerDelegate {
protected:
    ~RingingTest() override {
        for (const AlarmPtr& alarm : m_alarms)
            if (alarm->context())
                alarm->context()->close();
        loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void startFlashing() override { trace.add(u"flash"_qs); }
    void stopFlashing() override {}
    [[nodiscard]] QPoint placeFor(QSize) const override { return {300, 40}; }
    void snoozeWindowDidSnooze(SnoozeWindowController& window) override {
        trace.add(window.windowAlarm()->title() + u" snoozed"_qs);
    }
    void snoozeWindowDidClear(SnoozeWindowController& window) override {
        trace.add(window.windowAlarm()->title() + u" cleared"_qs);
        window.close();
    }

    AlarmPtr alarm(AlarmOf values) {
        values.kind = Alarm::Dated;
        values.time = "11-24 07:30";
        values.snoozeTime = 5;
        m_alarms.push_back(values.alarm());
        if (!values.sound)
            m_alarms.back()->setSoundPath(u"unused"_qs);
        return m_alarms.back();
    }
    AlarmPtr ring(const AlarmOf& values) {
        AlarmPtr ringing = alarm(values);
        m_ringer.activateAlarm(ringing);
        return ringing;
    }

    static QList<QWidget*> windows() { return windowsNamed("SnoozeWindowController"); }
    static QWidget* windowOf(const char* title) {
        for (QWidget* window : windows())
            if (window->accessibleName().startsWith(QLatin1String(title)))
                return window;
        ADD_FAILURE() << "no window of " << title;
        return nullptr;
    }
    static void click(const char* title, const char* button) {
        QTest::mouseClick(windowOf(title)->findChild<QPushButton*>(QLatin1String(button)),
                          Qt::LeftButton);
    }

    // What each window says beside its title, oldest first.
    std::vector<std::string> notes() const {
        std::vector<std::string> found;
        for (const AlarmPtr& alarm : m_alarms)
            found.push_back(alarm->title().toStdString() + ": " +
                            windowOf(qPrintable(alarm->title()))
                                ->findChild<QLabel*>(u"noteLabel"_qs)
                                ->accessibleName()
                                .toStdString());
        return found;
    }

    SoundRepeat m_repeat{loop, player};
    TextSpeaker m_speaker{speech};
    FakeSoundOutput m_output{loop};
    FakeSleepInhibitor m_inhibitor;
    AlarmRinger m_ringer{{loop, player, m_repeat, m_speaker, *this, *this, *this,
                          [](const QString& path) { return path == u"ping"_qs; }, m_output,
                          m_inhibitor, [] { return u"ping"_qs; }}};
    std::vector<AlarmPtr> m_alarms;
};

TEST_F(RingingTest, alertSoundPlaysThreeTimesWhateverTheUserDoes) {
    const AlarmPtr tea = ring({.title = "tea", .sound = "ping"});
    EXPECT_TRUE(tea->isTriggered()) << "before anything else can tick it again";
    loop.advance(500ms);
    EXPECT_EQ(windows().size(), 1);
    m_ringer.deactivateAlarm(tea);
    loop.advance(10s);
    EXPECT_THAT(trace.events(),
                ElementsAre("0 flash", "0 ping play", "1000 ping finished", "1000 ping play",
                            "2000 ping finished", "2000 ping play", "3000 ping finished"));
}

TEST_F(RingingTest, otherSoundPlaysOnceAndStopsWithItsAlarmOrTheNextOrFades) {
    for (const char* path : {"a", "b", "c"})
        player.setFile(QString::fromLatin1(path), {.duration = 60s});
    ring({.title = "first", .sound = "a"});
    loop.advance(1s);
    const AlarmPtr second = ring({.title = "second", .sound = "b"});
    loop.advance(1s);
    m_ringer.deactivateAlarm(second);
    loop.advance(1s);
    ring({.title = "third", .sound = "c", .fades = true});
    loop.advance(60s);
    std::vector<std::string> heard;
    bool isFading = false;
    for (const std::string& event : trace.events())
        if (const auto step = event.find(" 0."); step == event.npos)
            heard.push_back(event);
        else if (!std::exchange(isFading, true))
            heard.push_back(event.substr(0, step));
    EXPECT_THAT(heard, ElementsAre("0 a play", "0 flash", "1000 a stop", "1000 b play",
                                   "1000 flash", "2000 b stop", "3000 c play", "3000 flash",
                                   "13200 c volume", "23000 c stop"));
    EXPECT_TRUE(player.sounds().empty());
}

TEST_F(RingingTest, spokenTitleComesBeforeTheSoundOfAnAlarmThatStillRings) {
    player.setFile(u"song"_qs, {.duration = 2s});
    const AlarmPtr snoozed = ring({.title = "tea", .sound = "song", .voice = "Zoe"});
    loop.advance(500ms);
    m_ringer.deactivateAlarm(snoozed);
    // Announcements overlap, and each alarm sounds after its own.
    ring({.title = "cake", .sound = "song", .voice = "Tom & Tim"});
    loop.advance(400ms);
    ring({.title = "nap", .sound = "ping", .voice = "Anna"});
    ring({.title = "no voice chosen", .sound = "rain", .voice = ""});
    loop.advance(1500ms);
    EXPECT_THAT(trace.events(),
                ElementsAre("0 flash", "0 Zoe says tea", "500 Tom & Tim says cake", "500 flash",
                            "900 Anna says nap", "900 flash", "900 rain play", "900 flash",
                            "1000 Zoe said tea", "1500 Tom & Tim said cake", "1500 rain stop",
                            "1500 song play", "1900 Anna said nap", "1900 song stop",
                            "1900 ping play"));
}

TEST_F(RingingTest, preparedAlarmRingsAtOnceAndAsItIsThen) {
    for (const char* path : {"song", "other"})
        player.setFile(QString::fromLatin1(path), {.duration = 2s, .loadDelay = 3s});
    const AlarmPtr tea = alarm({.title = "tea", .sound = "song"});
    const AlarmPtr cake = alarm({.title = "cake", .sound = "song"});
    player.setFile(u"late"_qs, {.isPlayable = false}); // on a disk that is not mounted yet
    const AlarmPtr late = alarm({.title = "late", .sound = "late"});
    for (const AlarmPtr& soon : {tea, cake, late, alarm({.title = "nap", .voice = "Zoe"})})
        m_ringer.prepareAlarm(soon);
    loop.advance(10s);
    m_ringer.activateAlarm(tea);
    loop.advance(5s);
    cake->setSoundPath(u"other"_qs);
    m_ringer.activateAlarm(cake);
    loop.advance(6s);
    EXPECT_THAT(trace.events(), ElementsAre("0 Zoe learns nap", "10000 song play", "10000 flash",
                                            "12000 song finished", "15000 other play",
                                            "15000 flash", "20000 other finished"));
    player.setFile(u"late"_qs, {.duration = 1s});
    m_ringer.activateAlarm(late);
    loop.advance(2s);
    EXPECT_THAT(trace.plays().back(), "21000 late");
    EXPECT_EQ(player.sounds().size(), 1u) << "nobody has taken the song";
    loop.advance(10s);
    EXPECT_TRUE(player.sounds().empty());
}

TEST_F(RingingTest, fileThatCannotBeHeardRingsAsThreePingsAndTheWindowNamesIt) {
    const LogCapture log;
    player.setFile(u"/songs/gone.mp3"_qs, {.isPlayable = false});
    player.setFile(u"/net/hangs"_qs, {.duration = 1s, .loadDelay = 1h});
    player.setFile(u"answered"_qs, {.loadDelay = 2s, .isPlayable = false});
    ring({.title = "gone",
          .sound = "/songs/gone.mp3"}); // the next one takes its place before that is known
    const AlarmPtr snoozed = ring({.title = "snoozed", .sound = "answered"});
    loop.advance(1s);
    m_ringer.deactivateAlarm(snoozed);
    ring({.title = "hangs", .sound = "/net/hangs", .fades = true});
    ring({.title = "mute", .sound = "ping", .voice = "No such voice"});
    loop.advance(10s);
    EXPECT_THAT(notes(), ElementsAre("gone: gone.mp3 is missing: Ping rings.",
                                     "snoozed: ", "hangs: hangs cannot be read: Ping rings.",
                                     "mute: Not heard: the voice No such voice is missing."));
    EXPECT_THAT(trace.plays(),
                ElementsAre("0 /songs/gone.mp3", "0 answered", "0 ping", "1000 ping",
                            "1000 /net/hangs", "2000 ping", "6000 ping", "7000 ping", "8000 ping"));
}

TEST_F(RingingTest, windowsOfAlarmsThatAreToBeHeardSayWhyTheyAreNotUntilTheyAre) {
    player.setFile(u"gone"_qs, {.isPlayable = false});
    using Obstacle = SoundOutputState::Obstacle;
    m_output.setState({.obstacle = Obstacle::Muted, .detail = {}, .volume = 50});
    const AlarmPtr silent = ring({.title = "silent"});
    loop.advance(1s);
    EXPECT_TRUE(m_inhibitor.isHeld);
    EXPECT_EQ(m_output.watches(), 0U) << "nobody needs it";
    const AlarmPtr song = ring({.title = "song", .sound = "gone"});
    const AlarmPtr said = ring({.title = "said", .voice = "Zoe"});
    loop.advance(1s);
    const std::string muted = "Not heard: the sound is muted.";
    EXPECT_THAT(notes(), ElementsAre("silent: ", "song: " + muted, "said: " + muted));
    m_output.setState({.obstacle = Obstacle::DummyOutput, .detail = {}, .volume = 50});
    EXPECT_EQ(notes()[2], "said: Not heard: there is no sound output.");
    m_output.setState({.obstacle = Obstacle::None, .detail = {}, .volume = 50});
    loop.advance(10s);
    EXPECT_THAT(notes(), ElementsAre("silent: ", "song: gone is missing: Ping rings.", "said: "));
    for (const AlarmPtr& alarm : {song, silent, said}) {
        EXPECT_TRUE(m_inhibitor.isHeld);
        m_ringer.deactivateAlarm(alarm);
    }
    EXPECT_FALSE(m_inhibitor.isHeld);
    EXPECT_EQ(m_output.watches(), 0U);
}

// Heard is a play that ended whole, not one that was begun.
TEST_F(RingingTest, alarmThatTheServerLeftUnheardSoundsAgainWhenItIsBackUnlessAnswered) {
    using Obstacle = SoundOutputState::Obstacle;
    const auto becomes = [&](Obstacle obstacle) {
        m_output.setState({.obstacle = obstacle, .detail = {}, .volume = 50});
    };
    const std::string gone = "Not heard: no sound server answers.";
    player.setFile(u"song"_qs, {.duration = 4s});
    const AlarmPtr song = ring({.title = "song", .sound = "song"});
    loop.advance(1s);
    player.breakAll();
    becomes(Obstacle::NoServer);
    loop.advance(10s);
    EXPECT_THAT(trace.plays(), ElementsAre("0 song")) << "nobody would hear it";
    becomes(Obstacle::None);
    loop.advance(1s);
    EXPECT_THAT(trace.plays(), ElementsAre("0 song", "11000 song"));
    EXPECT_THAT(notes(), ElementsAre("song: " + gone)) << "until it was heard";
    loop.advance(3s);
    EXPECT_THAT(notes(), ElementsAre("song: "));

    player.hasServer = false; // though the output is well
    ring({.title = "ping", .sound = "ping"});
    loop.advance(3s);
    EXPECT_EQ(notes().back(), "ping: Not heard: the sound broke off.");
    player.hasServer = true;
    loop.advance(5s);
    EXPECT_EQ(notes().back(), "ping: ");

    becomes(Obstacle::DummyOutput);
    const AlarmPtr answered = ring({.title = "answered", .sound = "ping"});
    const AlarmPtr said = ring({.title = "said", .voice = "Zoe"});
    loop.advance(5s);
    m_ringer.deactivateAlarm(answered);
    trace.clear();
    becomes(Obstacle::Muted);
    loop.advance(5s);
    EXPECT_THAT(trace.events(), ElementsAre("28000 Zoe says said", "29000 Zoe said said"))
        << "muting is the user's own doing";
    becomes(Obstacle::None);
    EXPECT_EQ(notes().back(), "said: ");
}

TEST_F(RingingTest, whateverCannotBeHeardStillGetsItsWindowAndTheFlashing) {
    const LogCapture log;
    ring({.title = "silent"});
    m_ringer.deactivateAlarm(ring({.title = "answered elsewhere before its turn"}));
    const AlarmPtr mute = ring({.title = "no such voice", .sound = "ping", .voice = "Gone"});
    player.hasServer = false;
    ring({.title = "no server", .sound = "ping"});
    loop.advance(1s);
    EXPECT_EQ(windows().size(), 3);
    EXPECT_EQ(std::count(trace.events().begin(), trace.events().end(), "0 flash"), 3);
    EXPECT_TRUE(mute->isTriggered());
    EXPECT_TRUE(log.messages().contains(
        u"dorvane.firing: cannot speak: the voice Gone is not installed"_qs));
}

TEST_F(RingingTest, eachWindowAnswersForItsOwnAlarmAndAnUnansweredOneClearsIt) {
    for (const char* title : {"a", "b", "c"})
        ring({.title = title})
            ->setSnoozeTime(*title == 'c' ? 0 : 5); // must not vanish before it was seen
    loop.advance(1s);
    trace.clear();
    click("a", "snoozeButton");
    loop.advance(10min);
    EXPECT_THAT(trace.events(),
                ElementsAre("1000 a snoozed", "60000 c cleared", "300000 b cleared"));
    EXPECT_EQ(windows(), QList<QWidget*>{windowOf("a")}) << "until its delegate closes it";
}

TEST_F(RingingTest, windowShowsATitleOfAnyLengthInTwoLines) {
    const QString word = u"Donaudampfschifffahrt"_qs;
    const QString wide = u"\u8d77\u5e8a"_qs;
    const struct {
        QString title, begin;
        bool isCut = false;
    } cases[] = {
        {u"<b>Tea</b> & cake"_qs, u"<b>Tea</b> & cake"_qs},
        {word.repeated(2) + u" now"_qs, word},
        {word.repeated(500), word, true},
        {wide.repeated(80), wide, true},
    };
    for (const auto& [title, begin, isCut] : cases) {
        const AlarmPtr titled = alarm({});
        titled->setTitle(title);
        m_ringer.activateAlarm(titled);
        loop.advance(1s);
        const QWidget& window = *windows().front();
        const auto label = window.findChild<QLabel*>(u"titleLabel"_qs);
        SCOPED_TRACE(label->text().toStdString());
        EXPECT_TRUE(label->text().startsWith(begin));
        EXPECT_EQ(label->text().endsWith(u'\u2026'), isCut);
        EXPECT_EQ(label->toolTip().isEmpty(), !isCut);
        EXPECT_LE(label->text().count(u'\n'), 1);
        EXPECT_LE(label->fontMetrics().size(0, label->text()).width(), label->width());
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(window.findChild<QLabel*>(u"timeLabel"_qs)->text(), u"Tue, 7:30"_qs);
        titled->context()->close();
    }
}

TEST_F(RingingTest, windowsOfOneSizeHideNothingOfEachOtherAndUseEveryPlaceAgain) {
    ring({.title = "a"});
    loop.advance(1s);
    const QRect first = windowOf("a")->geometry();
    EXPECT_EQ(first.topLeft(), QPoint(300, 40));
    for (const char* title : {"b", "c", "d", "e", "f with a title of two lines, or nearly so"})
        ring({.title = title});
    loop.advance(1s);
    QRegion seen;
    for (const QWidget* window : windows()) {
        EXPECT_EQ(window->size(), first.size());
        EXPECT_TRUE(window->screen()->geometry().contains(window->geometry()));
        EXPECT_FALSE(seen.intersects(window->geometry()));
        seen += window->geometry();
    }
    m_alarms.front()->context()->close();
    ring({.title = "g"});
    loop.advance(1s);
    EXPECT_EQ(windowOf("g")->geometry(), first);
}

// What somebody is typing when the keyboard goes to the next window does not press that one.
TEST_F(RingingTest, keyboardGoesFromAnAnsweredWindowToTheNext) {
    for (const char* title : {"a", "b"})
        ring({.title = title});
    loop.advance(1s);
    trace.clear();
    windowOf("a")->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("a")));
    ring({.title = "c"});
    loop.advance(1s);
    EXPECT_TRUE(windowOf("a")->isActiveWindow()) << "the new one does not take it";
    click("a", "clearButton");
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("b")));
    for (const auto pause : {0ms, 499ms, 500ms}) {
        loop.advance(pause);
        QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Space);
    }
    EXPECT_THAT(trace.events(), ElementsAre("1000 flash", "2000 a cleared", "2999 b snoozed"));
}

TEST_F(RingingTest, keysThatWereMeantForAnotherWindowPressNothing) {
    const struct {
        const char* title;
        Qt::Key key;
        std::vector<RunLoop::Milliseconds> presses; // after the window came up
    } cases[] = {
        {"within half a second", Qt::Key_Return, {499ms}},
        {"typing goes on", Qt::Key_Space, {200ms, 500ms, 900ms, 1200ms}},
        {"after half a second", Qt::Key_Space, {500ms}},
        {"after a pause", Qt::Key_Return, {100ms, 600ms}},
        {"escape", Qt::Key_Escape, {700ms}},
    };
    SnoozeWindowStack stack(*this);
    for (const auto& [title, key, presses] : cases) {
        const auto start = loop.uptime();
        const auto controller =
            SnoozeWindowController::showCloseTo(stack, loop, *this, alarm({.title = title}));
        EXPECT_TRUE(QTest::qWaitForWindowActive(windowOf(title)));
        for (const auto press : presses) {
            loop.advance(start + press - loop.uptime());
            QTest::keyClick(windowOf(title)->focusWidget(), key);
        }
        controller->close();
        loop.advance(start + 10s - loop.uptime());
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_THAT(trace.events(), ElementsAre("20500 after half a second snoozed",
                                            "30600 after a pause snoozed", "40700 escape snoozed"));
}

} // namespace

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
    void stopFlashing() override { trace.add(u"no flash"_qs); }
    [[nodiscard]] QPoint placeFor(QSize) const override { return {300, 40}; }
    [[nodiscard]] bool makeWay(std::function<void()>) override { return true; }
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
                          m_inhibitor, [] { return u"ping"_qs; },
                          [this]() -> std::unique_ptr<Notice> {
                              return m_isHidden ? std::make_unique<FakeNotice>(*this) : nullptr;
                          },
                          [this] { return m_volume; }}};
    std::vector<AlarmPtr> m_alarms;
    bool m_isHidden = false; // windows, by others
    float m_volume = 1;
    std::function<void(const QString& key)> m_chosen;

private:
    class FakeNotice final : public Notice {
    public:
        explicit FakeNotice(RingingTest& test) : m_test(test) {}
        ~FakeNotice() override { withdraw(); }
        void show(const QString& title, const QString& text, const std::vector<Action>& actions,
                  std::function<void(const QString& key)> chosen) override {
            m_test.trace.add(
                u"notice: %1, %2, %3, %4"_qs.arg(title, text, actions[0].label, actions[1].label));
            m_test.m_chosen = std::move(chosen);
        }
        void withdraw() override { m_test.trace.add(u"no notice"_qs); }

    private:
        RingingTest& m_test;
    };
};

TEST_F(RingingTest, aWindowThatOthersMayHideHasANotificationThatAnswersIt) {
    m_isHidden = true;
    ring({.title = "tea", .sound = nullptr});
    loop.runPending();
    m_chosen(u"clear"_qs);
    loop.runPending();
    m_chosen(u"snooze"_qs); // too late
    loop.runPending();
    EXPECT_THAT(trace.events(), ElementsAre("0 notice: tea, Tue, 7:30, Snooze, Clear", "0 flash",
                                            "0 tea cleared", "0 no notice"));
}

// Quieter than full scale, however many: the newest in front, the others far behind.
TEST_F(RingingTest, soundsOfAlarmsThatRingTogetherAreMixedAndADrownedOneIsHeardAfterwards) {
    for (const char* path : {"long", "short", "fading"})
        player.setFile(QString::fromLatin1(path), {.duration = *path == 's' ? 2s : 6s});
    ring({.title = "ping", .sound = "ping"});
    loop.advance(1500ms);
    const AlarmPtr answered = ring({.title = "answered", .sound = "long"});
    ring({.title = "drowned", .sound = "short"});
    loop.advance(500ms);
    ring({.title = "in front", .sound = "fading"});
    loop.advance(2s);
    m_ringer.deactivateAlarm(answered);
    loop.advance(10s);
    EXPECT_THAT(
        trace.events(),
        ElementsAre("0 flash", "0 ping play", "1000 ping finished", "1000 ping play",
                    "1500 long play", "1500 flash", "1500 short play", "1500 flash",
                    "1500 ping volume 0.14", "1500 long volume 0.75", "1500 ping volume 0.07",
                    "1500 long volume 0.07", "1500 short volume 0.75", "2000 ping finished",
                    "2000 ping play", "2000 fading play", "2000 flash", "2000 ping volume 0.05",
                    "2000 long volume 0.05", "2000 short volume 0.05", "2000 fading volume 0.75",
                    "3000 ping finished", "3000 long volume 0.07", "3000 short volume 0.07",
                    "3500 short finished", "3500 long volume 0.14", "4000 long stop",
                    "4000 fading volume 1.00", "8000 fading finished", "8000 short play",
                    "10000 short finished"));
    m_volume = 0.5F;
    for (int i = 0; i < 12; ++i)
        ring({.title = "one of many", .sound = "ping"});
    loop.advance(100ms);
    double sum = 0;
    for (const Sound* sound : player.sounds())
        sum += double(sound->volume());
    EXPECT_EQ(player.sounds().size(), 12U);
    EXPECT_NEAR(sum, 0.445, 0.001);
}

TEST_F(RingingTest, spokenTitleComesBeforeTheSoundOfAnAlarmThatStillRings) {
    player.setFile(u"song"_qs, {.duration = 2s});
    const AlarmPtr snoozed = ring({.title = "tea", .sound = "song", .voice = "Zoe"});
    loop.advance(500ms);
    m_ringer.deactivateAlarm(snoozed);
    ring({.title = "cake", .sound = "song", .voice = "Tom & Tim"});
    loop.advance(400ms);
    ring({.title = "no voice chosen", .voice = ""});
    loop.advance(3s);
    EXPECT_THAT(trace.events(),
                ElementsAre("0 flash", "0 Zoe says tea", "500 Zoe breaks off tea", "500 no flash",
                            "500 Tom & Tim says cake", "500 flash", "900 flash",
                            "1500 Tom & Tim said cake", "1500 song play", "3500 song finished"));
}

TEST_F(RingingTest, whatKeepsATitleFromBeingSpokenSilencesNoAlarm) {
    const LogCapture log;
    speech.unspeakable = u"mute"_qs;
    speech.endless = u"endless"_qs;
    const struct {
        const char* sound;
        const char* end;
        std::vector<std::string> plays;
    } cases[] = {
        {"song", ".", {"0 song", "0 song", "1000 song", "5000 song"}}, // the drowned one again
        {nullptr,
         ": Ping rings.",
         {"10000 ping", "10000 ping", "11000 ping", "11000 ping", "12000 ping", "12000 ping",
          "15000 ping", "16000 ping", "17000 ping"}},
    };
    for (const auto& [sound, end, plays] : cases) {
        ring({.title = "voiceless", .sound = sound, .voice = "Gone"});
        ring({.title = "mute", .sound = sound, .voice = "Zoe"});
        ring({.title = "endless", .sound = sound, .voice = "Zoe"});
        loop.advance(10s);
        EXPECT_EQ(notes(), (std::vector<std::string>{
                               std::string("voiceless: The voice Gone is missing") + end,
                               std::string("mute: The title cannot be spoken") + end,
                               std::string("endless: The title cannot be spoken") + end}));
        EXPECT_EQ(trace.plays(), plays);
        trace.clear();
        for (const AlarmPtr& alarm : m_alarms)
            alarm->context()->close();
        m_alarms.clear();
    }
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
    loop.advance(10s);
    EXPECT_THAT(notes(), ElementsAre("gone: gone.mp3 is missing: Ping rings.",
                                     "snoozed: ", "hangs: hangs cannot be read: Ping rings."));
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

    trace.clear();
    ring({.title = "torn", .sound = "song"}); // at some place in the file, each time
    for (const char* plays : {"23000 song", "26000 song", "30000 ping"}) {
        loop.advance(1s);
        EXPECT_EQ(trace.plays().back(), plays);
        player.breakAll();
        loop.advance(2s);
    }
    loop.advance(10s);
    EXPECT_EQ(notes().back(), "torn: song broke off: Ping rings.");
    EXPECT_EQ(trace.plays().back(), "31000 ping") << "heard whole once";
    m_ringer.deactivateAlarm(m_alarms.back());

    becomes(Obstacle::DummyOutput);
    const AlarmPtr answered = ring({.title = "answered", .sound = "ping"});
    const AlarmPtr said = ring({.title = "said", .voice = "Zoe"});
    loop.advance(5s);
    m_ringer.deactivateAlarm(answered);
    trace.clear();
    becomes(Obstacle::Muted);
    loop.advance(5s);
    EXPECT_THAT(trace.events(), ElementsAre("47000 Zoe says said", "48000 Zoe said said"))
        << "muting is the user's own doing";
    becomes(Obstacle::None);
    EXPECT_EQ(notes().back(), "said: ");
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
    const auto clearAll = [] { return windowOf("a")->findChild<QWidget*>(u"clearAllButton"_qs); };
    const AlarmPtr second = ring({.title = "b"});
    loop.advance(1s);
    EXPECT_FALSE(clearAll()->isVisible()) << "two are answered one by one";
    for (int i = 0; i < 50; ++i)
        ring({.title = "with a title of two lines, or nearly so, and the voice of nobody"});
    loop.advance(1s);
    EXPECT_TRUE(clearAll()->isVisible());
    QRegion seen;
    const QList<QWidget*> shown = windows();
    for (const QWidget* window : shown) {
        EXPECT_EQ(window->size(), first.size());
        EXPECT_TRUE(window->screen()->geometry().contains(window->geometry()));
        EXPECT_FALSE(seen.intersects(window->geometry()));
        seen += window->geometry();
    }
    EXPECT_GT(shown.size(), 4);
    EXPECT_LT(shown.size(), 52) << "the others wait for a place";
    const QRect place = windowOf("b")->geometry();
    second->context()->close();
    loop.advance(1s);
    const QList<QWidget*> then = windows();
    EXPECT_EQ(then.size(), shown.size());
    EXPECT_TRUE(std::any_of(then.begin(), then.end(),
                            [&](const QWidget* each) { return each->geometry() == place; }));
}

// What somebody is typing when the keyboard goes to the next window does not press that one; but
// whoever has answered one by key or click means the next key for the next.
TEST_F(RingingTest, keyboardGoesFromAnAnsweredWindowToTheNext) {
    for (const char* title : {"a", "b"})
        ring({.title = title});
    loop.advance(1s);
    trace.clear();
    windowOf("a")->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("a")));
    for (const char* title : {"c", "d"})
        ring({.title = title});
    loop.advance(1s);
    EXPECT_TRUE(windowOf("a")->isActiveWindow()) << "the new ones do not take it";
    const auto showsDefault = [](const char* title) {
        return windowOf(title)->findChild<QPushButton*>(u"snoozeButton"_qs)->isDefault();
    };
    EXPECT_TRUE(showsDefault("a"));
    EXPECT_FALSE(showsDefault("b")) << "one looks as if Return pressed it";
    click("a", "clearButton");
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("b")));
    EXPECT_TRUE(showsDefault("b"));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
    QApplication::sendEvent(windowOf("b")->focusWidget(), &held);
    QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Return);
    EXPECT_THAT(trace.events(),
                ElementsAre("1000 flash", "1000 flash", "2000 a cleared", "2000 b snoozed"));
    trace.clear();
    m_alarms[1]->context()->close();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("c")));
    m_alarms[2]->context()->close(); // it was answered elsewhere
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("d")));
    for (const auto pause : {0ms, 499ms, 500ms}) {
        loop.advance(pause);
        QTest::keyClick(windowOf("d")->focusWidget(), Qt::Key_Space);
    }
    EXPECT_THAT(trace.events(), ElementsAre("2999 d snoozed"));
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
    SnoozeWindowStack stack(loop, *this);
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

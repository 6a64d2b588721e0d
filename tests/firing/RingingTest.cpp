// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/firing/RingingFixture.h"

using namespace dorvane::testing;

namespace {

using RingingTest = RingingFixture;

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

// Quieter than full scale, however many: the newest in front, the others far behind, and none is
// heard before these have gone back.
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
    EXPECT_THAT(trace.events(),
                ElementsAre("0 flash", "0 ping play", "1000 ping finished", "1000 ping play",
                            "1500 long volume 0.00", "1500 long play", "1500 flash",
                            "1500 short volume 0.00", "1500 short play", "1500 flash",
                            "1500 ping volume 0.14", "1500 ping volume 0.07",
                            "1650 long volume 0.07", "1650 short volume 0.75", "2000 ping finished",
                            "2000 ping play", "2000 fading volume 0.00", "2000 fading play",
                            "2000 flash", "2000 ping volume 0.05", "2000 long volume 0.05",
                            "2000 short volume 0.05", "2150 fading volume 0.75",
                            "3000 ping finished", "3000 long volume 0.07", "3000 short volume 0.07",
                            "3500 short finished", "3500 long volume 0.14", "4000 long stop",
                            "4000 fading volume 1.00", "8000 fading finished", "8000 short play",
                            "10000 short finished"));
    m_volume = 0.5F;
    for (int i = 0; i < 12; ++i)
        ring({.title = "one of many", .sound = "ping"});
    for (const auto& [wait, loudest] : {std::pair(1ms, 0.5), {100ms, 0.5}, {100ms, 0.445}}) {
        loop.advance(wait);
        double sum = 0;
        for (const Sound* sound : player.sounds())
            sum += double(sound->volume());
        EXPECT_EQ(player.sounds().size(), 12U);
        EXPECT_LT(sum, loudest + 0.001);
    }
}

TEST_F(RingingTest, soundThatStartsSoftlyGrowsForTenSecondsHoweverShortItIs) {
    player.setFile(u"song"_qs, {.duration = 4s});
    const AlarmPtr song =
        ring({.title = "song", .sound = "song", .untilAnswered = true, .softly = true});
    for (const auto& [wait, volume] : {std::pair(100ms, 0.1), {5s, 0.55}, {6s, 1.0}}) {
        loop.advance(wait);
        ASSERT_EQ(player.sounds().size(), 1U);
        EXPECT_NEAR(double(player.sounds()[0]->volume()), volume, 0.03);
    }
    m_ringer.deactivateAlarm(song);
    ring({.title = "ping", .sound = "ping", .softly = true});
    trace.clear();
    loop.advance(10s);
    EXPECT_EQ(trace.plays(), (std::vector<std::string>{"11100 ping", "12100 ping", "13100 ping"}));
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

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SoundRepeat.h"

#include "firing/FadingSound.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/VirtualRunLoop.h"

#include <gmock/gmock.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

const QString file = QStringLiteral("a");

class SoundRepeatTest : public ::testing::Test {
protected:
    VirtualRunLoop m_loop{at("2026-11-21 08:00")};
    Trace m_trace{m_loop};
    FakeSoundPlayer m_player{m_loop, m_trace};
    SoundRepeat m_repeat{m_loop, m_player};
};

TEST_F(SoundRepeatTest, startsThreeTimesOneDurationApartAndThenLetsGo) {
    // A length that does not come out even in milliseconds, and a slow disk.
    m_player.setFile(file, {.duration = 1.4996s, .loadDelay = 40ms});
    m_repeat.playSoundAtPath(file, 3);
    m_loop.advance(1s);
    m_loop.beginEventTracking(); // an open menu changes nothing
    m_loop.advance(10s);
    EXPECT_THAT(m_trace.events(), ElementsAre("40 a play", "1540 a finished", "1540 a play",
                                              "3039 a stop", "3039 a play", "4539 a finished"));
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST_F(SoundRepeatTest, aLateFirstPlayIsHeardToItsEndAndMovesTheOthersAlong) {
    m_player.setFile(file, {.duration = 1s, .startDelay = 30ms});
    m_repeat.playSoundAtPath(file, 3);
    m_loop.advance(10s);
    EXPECT_THAT(m_trace.events(), ElementsAre("0 a play", "1030 a finished", "1030 a play",
                                              "2030 a finished", "2030 a play", "3030 a finished"));
}

TEST_F(SoundRepeatTest, unplayableFilesAreLetGoAndTheNextOneTriesAgain) {
    m_player.setFile(QStringLiteral("bad"), {.isPlayable = false});
    m_repeat.playSoundAtPath(QStringLiteral("bad"), 3);
    m_player.hasServer = false;
    m_repeat.playSoundAtPath(file, 3);
    m_loop.advance(1ms);
    EXPECT_TRUE(m_player.sounds().empty());
    m_player.hasServer = true;
    m_repeat.playSoundAtPath(file, 1);
    m_loop.advance(10s);
    EXPECT_THAT(m_trace.events(),
                ElementsAre("0 bad refused", "0 a refused", "1 a play", "1001 a finished"));
}

TEST_F(SoundRepeatTest, aHundredAtOnceAreCutToWhatCanBeHeard) {
    for (int i = 0; i < 100; ++i)
        m_repeat.playSoundAtPath(file, 3);
    EXPECT_EQ(m_player.sounds().size(), 16u);
    m_loop.advance(10s);
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST(FadingSoundTest, playsShortSoundsWholeAndFadesAndCutsLongOnes) {
    struct Case {
        const char* name;
        Sound::Seconds duration;
        float volume;
        RunLoop::Milliseconds end;
        std::size_t steps;
        float lastVolume;
    };
    const Case cases[] = {
        {"short", 5s, 1.0f, 5s, 0, 1.0f},       {"just ten seconds", 10s, 1.0f, 10s, 0, 1.0f},
        {"between", 15s, 1.0f, 15s, 49, 0.51f}, {"long", 60s, 1.0f, 20s, 49, 0.51f},
        {"silent", 60s, 0.0f, 20s, 49, 0.01f},
    };
    for (const Case& c : cases) {
        VirtualRunLoop loop(at("2026-11-21 08:00"));
        Trace trace(loop);
        FakeSoundPlayer player(loop, trace);
        player.setFile(file, {.duration = c.duration});
        FadingSound fading(loop, player.soundWithContentsOfFile(file));
        fading.sound().setVolume(c.volume);
        loop.runPending();
        trace.clear();
        RunLoop::Milliseconds end{0};
        fading.sound().setFinished([&](bool) { end = loop.uptime(); });
        EXPECT_TRUE(fading.playFor(20s, 10s));
        loop.advance(9999ms);
        const std::size_t before = trace.events().size();
        loop.advance(5min);
        EXPECT_EQ(end, c.end) << c.name;
        EXPECT_NEAR(fading.sound().volume(), c.lastVolume, 0.011f) << c.name;
        // The end itself is the one event that is not a step.
        const std::size_t after = trace.events().size() - before;
        EXPECT_NEAR(double(after), double(c.steps + (c.duration > 5s ? 1 : 0)), 1.0) << c.name;
    }
}

} // namespace

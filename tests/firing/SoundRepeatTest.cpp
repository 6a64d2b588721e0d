// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SoundRepeat.h"

#include "firing/FadingSound.h"
#include "tests/support/FakeDesktop.h"

using namespace dorvane::testing;

namespace {

const QString file = u"a"_qs;

class SoundRepeatTest : public FakeDesktopTest {
protected:
    SoundRepeat m_repeat{loop, player};
};

TEST_F(SoundRepeatTest, startsThreeTimesOneDurationApartAndThenLetsGo) {
    // A length that does not come out even in milliseconds, and a slow disk.
    player.setFile(file, {.duration = 1.4996s, .loadDelay = 40ms});
    m_repeat.playSoundAtPath(file, 3);
    loop.advance(1s);
    loop.beginEventTracking(); // an open menu changes nothing
    loop.advance(9s);
    // A late first play is heard to its end and moves the others along.
    player.setFile(file, {.startDelay = 30ms});
    m_repeat.playSoundAtPath(file, 3);
    loop.advance(10s);
    EXPECT_THAT(trace.events(),
                ElementsAre("40 a play", "1540 a finished", "1540 a play", "3039 a stop",
                            "3039 a play", "4539 a finished", "10000 a play", "11030 a finished",
                            "11030 a play", "12030 a finished", "12030 a play",
                            "13030 a finished"));
    EXPECT_TRUE(player.sounds().empty());
}

TEST_F(SoundRepeatTest, whoAsksIsToldWhetherTheLastPlayWasHeardTheSeventeenthAtOnceToo) {
    std::vector<bool> ends;
    const auto ended = [&](bool isHeard) { ends.push_back(isHeard); };
    for (int i = 0; i < 17; ++i)
        m_repeat.playSoundAtPath(file, 3, ended);
    EXPECT_TRUE(ends.empty()) << "in a turn of its own";
    loop.advance(500ms);
    EXPECT_EQ(ends, std::vector{false});
    player.breakAll(); // the others go on and are heard
    loop.advance(5s);
    EXPECT_EQ(ends.size(), 17U);
    EXPECT_TRUE(ends.back());
    m_repeat.playSoundAtPath(file, 2, ended);
    loop.advance(1500ms);
    player.breakAll();
    loop.advance(5s);
    EXPECT_FALSE(ends.back());
    // A loudspeaker on the network, and one that never plays.
    for (const auto& [delay, isHeard] : {std::pair{400ms, true}, {4s, true}, {1h, false}}) {
        player.setFile(file, {.startDelay = delay, .isDelayedEachTime = true});
        m_repeat.playSoundAtPath(file, 3, ended);
        loop.advance(10s);
        EXPECT_EQ(ends.back(), isHeard) << delay.count();
    }
}

// Fades in steps of 0.2 s from the tenth second on, and is cut in the twentieth; by the real engine
// a little later, since its stop() makes up for a start that was up to 250 ms late.
TEST(FadingSoundTest, playsShortSoundsWholeAndFadesAndCutsLongOnesByWhatIsHeard) {
    const struct {
        const char* name;
        FakeSoundPlayer::File file;
        RunLoop::Milliseconds firstStep, end;
        float lastVolume = 0.51F;
        float volume = 1.0F;
    } cases[] = {
        {"short", {.duration = 5s}, 0ms, 5s, 1.0F},
        {"just ten seconds", {.duration = 10s}, 0ms, 10s, 1.0F},
        {"between", {.duration = 15s}, 10'100ms, 15s},
        {"long", {.duration = 60s}, 10'200ms, 20s},
        {"silent", {.duration = 60s}, 10'200ms, 20s, 0.01F, 0},
        {"slow disk", {.duration = 60s, .loadDelay = 3s}, 13'200ms, 22'750ms, 0.52F},
        {"slow server", {.duration = 60s, .startDelay = 100ms}, 10'300ms, 20s},
        {"hanging server", {.duration = 60s, .startDelay = 15s}, 25'200ms, 34'750ms, 0.52F},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeDesktop desktop;
        VirtualRunLoop& loop = desktop.loop;
        desktop.player.setFile(file, c.file);
        FadingSound fading(loop, desktop.player.soundWithContentsOfFile(file));
        fading.sound().setVolume(c.volume);
        RunLoop::Milliseconds firstStep{0};
        RunLoop::Milliseconds end{0};
        fading.sound().setFinished([&](bool) { end = loop.uptime(); });
        EXPECT_TRUE(fading.playFor(20s, 10s));
        const float before = fading.sound().volume();
        while (end == 0ms && loop.uptime() < 1min) {
            loop.advance(1ms);
            if (firstStep == 0ms && fading.sound().volume() < before)
                firstStep = loop.uptime();
        }
        EXPECT_EQ(firstStep, c.firstStep);
        EXPECT_EQ(end, c.end);
        EXPECT_NEAR(fading.sound().volume(), c.lastVolume, 0.011F);
    }
}

} // namespace

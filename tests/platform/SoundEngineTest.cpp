// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/SoundEngineFixture.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

class SoundEngineTest : public dorvane::testing::SoundEngineFixture {};

// Must come first: it is about the first sound of the process.
TEST_F(SoundEngineTest, preparedSoundIsHeardAtOnceTheVeryFirstToo) {
    Playing first(*this, tone("short.aiff", 0.3));
    ASSERT_TRUE(first.load());
    runFor(0.5);
    for (int round = 0; round < 2; ++round) {
        first.ends.clear();
        ASSERT_TRUE(first.start());
        const auto heard = first.heardToTheEnd();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_LT(heard[0].begin - first.from, 0.03 * patience());
        EXPECT_NEAR(heard[0].length(), 0.3, 0.01);
    }
}

TEST_F(SoundEngineTest, everyFormatIsHeardWholeAndItsDurationIsExact) {
    const std::pair<const char*, const char*> formats[] = {
        {"f.wav", ""},
        {"f.ogg", "-c:a libvorbis"},
        {"f.opus", "-c:a libopus"},
        {"f.flac", ""},
        {"f.mp3", ""},
        {"f22.mp3", "-ar 22050"},
        {"aac.m4a", "-c:a aac"},
        {"alac.m4a", "-c:a alac"},
        {"ima4.caf", "-c:a adpcm_ima_qt"},
    };
    for (const auto& [name, codec] : formats) {
        SCOPED_TRACE(name);
        Playing playing(*this, tone(name, 0.5, codec));
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        EXPECT_EQ(playing.ends, QList<bool>{true});
        EXPECT_NEAR(playing.sound->duration().count(), 0.5, 0.004);
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_NEAR(heard[0].length(), 0.5, 0.02);
        EXPECT_NEAR(m_capture.level(heard[0].begin + 0.1, heard[0].begin + 0.4), 0.5, 0.03);
    }
    EXPECT_EQ(m_player.soundUnfilteredTypes(),
              ModuleSoundPlayer(m_loop, u"/none"_qs).soundUnfilteredTypes())
        << "the installed libraries play every known type";
}

TEST_F(SoundEngineTest, volumeStepsAreHeardAndTheCutComesInTimeWithoutAClick) {
    Playing playing(*this, tone("long.wav", 60));
    ASSERT_TRUE(playing.start());
    RunLoop::Milliseconds played = -m_loop.uptime();
    runFor(0.5);
    playing.sound->setVolume(0.6F);
    runFor(0.5);
    playing.sound->stop();
    played += m_loop.uptime();
    const auto heard = playing.heardToTheEnd();
    EXPECT_EQ(playing.ends, QList<bool>{false});
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_NEAR(heard[0].length(), Sound::Seconds(played).count(), 0.02 * patience());
    EXPECT_NEAR(m_capture.level(heard[0].begin + 0.1, heard[0].begin + 0.4), 0.5, 0.01);
    EXPECT_NEAR(m_capture.level(heard[0].end - 0.2, heard[0].end - 0.1), 0.3, 0.01);
    const double steepest = 0.5 * 2 * M_PI * 441 / SinkCapture::rate;
    EXPECT_LT(m_capture.largestStep(heard[0].begin + 0.1, heard[0].end + 0.1), 1.1 * steepest);
}

TEST_F(SoundEngineTest, playsFromAnyPositionPausesAndTellsTheTime) {
    for (const char* name : {"i.wav", "i.mp3", "i.ogg", "i.opus", "i.m4a", "i.flac"}) {
        SCOPED_TRACE(name);
        Playing playing(*this, tone(name, 3, "", 2));
        playing.sound->setCurrentTime(Sound::Seconds(2.7)); // before it is loaded
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_NEAR(heard[0].length(), 0.3, 0.02);
        EXPECT_EQ(playing.sound->currentTime().count(), 0) << "a new play starts at the beginning";
    }

    Playing playing(*this, tone("i.wav", 3, "", 2));
    ASSERT_TRUE(playing.load() && playing.start());
    runFor(0.3);
    EXPECT_NEAR(playing.sound->currentTime().count(), 0.3, 0.06 * patience());
    playing.sound->setCurrentTime(Sound::Seconds(2.5));
    EXPECT_EQ(playing.sound->currentTime().count(), 2.5);
    playing.sound->pause(); // before the server knows of it
    playing.sound->resume();
    runFor(0.2);
    playing.sound->pause();
    EXPECT_TRUE(playing.sound->isPlaying());
    runFor(0.1);
    const auto paused = playing.sound->currentTime();
    EXPECT_NEAR(paused.count(), 2.7, 0.06 * patience());
    runFor(0.3);
    EXPECT_EQ(playing.sound->currentTime(), paused);
    playing.sound->resume();
    const auto heard = playing.heardToTheEnd();
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_NEAR(heard[1].begin - heard[0].end, 0.4, 0.06 * patience());
    EXPECT_NEAR(heard[0].length() + heard[1].length(), 0.5, 0.02);
    EXPECT_EQ(playing.ends, QList<bool>{true});
}

} // namespace

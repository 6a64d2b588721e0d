// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/SoundEngineFixture.h"

#include <QDir>

#include <cmath>

using namespace dorvane;
using dorvane::testing::SinkCapture;
using namespace std::chrono_literals;

namespace {

class SoundEngineTest : public dorvane::testing::SoundEngineFixture {};

// Must come first: it is about the first sound of the process.
TEST_F(SoundEngineTest, firstSoundIsHeardSoonAndTheNextSooner) {
    const QString path = tone(QStringLiteral("short.wav"), 0.3);
    for (const double limit : {0.2, 0.06, 0.06}) {
        Playing playing(*this, path);
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_LT(heard[0].begin - playing.from, limit * patience());
        EXPECT_NEAR(heard[0].length(), 0.3, 0.01);
    }
}

TEST_F(SoundEngineTest, everyFormatIsHeardWholeAndItsDurationIsExact) {
    const QList<QPair<QString, QStringList>> formats{
        {QStringLiteral("f.wav"), {}},
        {QStringLiteral("f24.wav"), {QStringLiteral("-c:a"), QStringLiteral("pcm_s24le")}},
        {QStringLiteral("stereo.wav"),
         {QStringLiteral("-af"), QStringLiteral("pan=stereo|c0=c0|c1=c0")}},
        {QStringLiteral("f.aiff"), {}},
        {QStringLiteral("f.ogg"), {QStringLiteral("-c:a"), QStringLiteral("libvorbis")}},
        {QStringLiteral("f.opus"), {QStringLiteral("-b:a"), QStringLiteral("96k")}},
        {QStringLiteral("f.flac"), {}},
        {QStringLiteral("f.mp3"), {}},
        {QStringLiteral("f22.mp3"), {QStringLiteral("-ar"), QStringLiteral("22050")}},
        {QStringLiteral("aac.m4a"), {QStringLiteral("-b:a"), QStringLiteral("128k")}},
        {QStringLiteral("alac.m4a"), {QStringLiteral("-c:a"), QStringLiteral("alac")}},
        {QStringLiteral("pcm.caf"), {}},
        {QStringLiteral("alac.caf"), {QStringLiteral("-c:a"), QStringLiteral("alac")}},
        {QStringLiteral("ima4.caf"), {QStringLiteral("-c:a"), QStringLiteral("adpcm_ima_qt")}},
    };
    for (const auto& [name, codec] : formats) {
        SCOPED_TRACE(qPrintable(name));
        Playing playing(*this, tone(name, 0.5, codec));
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        EXPECT_EQ(playing.ends, QList<bool>{true});
        EXPECT_NEAR(playing.sound->duration().count(), 0.5, 0.004);
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_NEAR(heard[0].length(), 0.5, 0.02);
        EXPECT_NEAR(s_capture->level(heard[0].begin + 0.1, heard[0].begin + 0.4), 0.5, 0.03);
    }
    EXPECT_EQ(m_player.soundUnfilteredTypes(),
              ModuleSoundPlayer(m_loop, QStringLiteral("/none")).soundUnfilteredTypes())
        << "the installed libraries play every known type";
}

TEST_F(SoundEngineTest, fadeStepsAreHeardAndTheCutComesInTimeWithoutAClick) {
    constexpr double interval = 0.2;
    constexpr int steps = 10;
    Playing playing(*this, tone(QStringLiteral("long.wav"), 60));
    ASSERT_TRUE(playing.start());
    RunLoopTimer fade;
    const auto begin = m_loop.scheduleOnce(
        1s,
        [&] {
            fade = m_loop.scheduleRepeating(
                200ms, [&] { playing.sound->setVolume(playing.sound->volume() - 0.01F); },
                RunLoopMode::Common);
        },
        RunLoopMode::Common);
    RunLoop::Milliseconds played = -m_loop.uptime();
    const auto cut = m_loop.scheduleOnce(
        3100ms,
        [&] {
            playing.sound->stop();
            played += m_loop.uptime();
        },
        RunLoopMode::Common);
    const auto heard = playing.heardToTheEnd();
    EXPECT_EQ(playing.ends, QList<bool>{false});
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_NEAR(heard[0].length(), Sound::Seconds(played).count(), 0.02);
    for (int step = 0; step <= steps; ++step) {
        const double end = heard[0].begin + 1 + interval * (step + 1) - (step == steps ? 0.12 : 0);
        EXPECT_NEAR(s_capture->level(end - 0.08, end), 0.5 * (1 - 0.01 * step), 0.01) << step;
    }
    const double steepest = 0.5 * 2 * M_PI * 441 / SinkCapture::rate;
    EXPECT_LT(s_capture->largestStep(heard[0].end - 0.1, heard[0].end + 0.1), 1.1 * steepest);
}

// The tone lies at the very end of the file, where a stop comes a little too early.
TEST_F(SoundEngineTest, repeatsOnATimerKeepTheirScheduleAndAreHeardToTheirEnds) {
    constexpr int times = 5;
    Playing playing(*this, island(QStringLiteral("repeat.wav"), 0.2, 0.6, 0.6));
    playing.sound = loaded(playing.path);
    int started = 0;
    const QDateTime first = m_loop.now().addMSecs(50);
    const auto timer = m_loop.scheduleAligned(
        first, 600ms,
        [&] {
            playing.sound->stop();
            if (started++ < times) {
                EXPECT_TRUE(playing.sound->play());
            }
        },
        RunLoopMode::Common);
    ASSERT_TRUE(runUntil([&] { return started > times; }));
    runFor(0.4);
    const auto heard = s_capture->bursts(playing.from);
    ASSERT_EQ(heard.size(), std::size_t{times});
    for (std::size_t i = 0; i < heard.size(); ++i) {
        EXPECT_NEAR(heard[i].begin - heard[0].begin, 0.6 * static_cast<double>(i), 0.01) << i;
        EXPECT_NEAR(heard[i].length(), 0.4, 0.01) << i;
    }
}

TEST_F(SoundEngineTest, playsFromAnyPositionPausesAndTellsTheTime) {
    for (const auto& name : {QStringLiteral("island.wav"), QStringLiteral("island.mp3"),
                             QStringLiteral("island.ogg"), QStringLiteral("island.opus"),
                             QStringLiteral("island.m4a"), QStringLiteral("island.flac")}) {
        SCOPED_TRACE(qPrintable(name));
        Playing playing(*this, island(name, 2, 3, 3.5));
        playing.sound->setCurrentTime(Sound::Seconds(2.7)); // before it is loaded
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_LT(heard[0].begin - playing.from, 0.1 * patience());
        EXPECT_NEAR(heard[0].length(), 0.3, 0.02);
        EXPECT_EQ(playing.sound->currentTime().count(), 0) << "a new play starts at the beginning";
    }

    Playing playing(*this, island(QStringLiteral("island.wav"), 2, 3, 3.5));
    ASSERT_TRUE(playing.start());
    runFor(0.3);
    EXPECT_NEAR(playing.sound->currentTime().count(), 0.3, 0.06 * patience());
    playing.sound->setCurrentTime(Sound::Seconds(2.5));
    EXPECT_EQ(playing.sound->currentTime().count(), 2.5);
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

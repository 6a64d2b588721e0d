// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/ModuleSoundPlayer.h"
#include "platform/linux/QtRunLoop.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SinkCapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace dorvane;
using dorvane::testing::LogCapture;
using dorvane::testing::SinkCapture;
using namespace std::chrono_literals;

namespace {

// The real engine, a real server and a null sink that is listened to; run by the sound rig.
class SoundEngineTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = std::make_unique<QTemporaryDir>();
        s_capture = std::make_unique<SinkCapture>();
        ASSERT_TRUE(s_capture->isRunning()) << "run this program through tests/support/sound-rig";
    }
    static void TearDownTestSuite() {
        s_capture.reset();
        s_folder.reset();
    }

    // Runs the loop until `done`; false after `limit`.
    bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = 10s) {
        QElapsedTimer waited;
        waited.start();
        const auto wake = m_loop.scheduleRepeating(
            1ms, [] {}, RunLoopMode::Common);
        while (!done() && waited.elapsed() < limit.count())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return done();
    }
    void runFor(double seconds) {
        const double end = s_capture->now() + seconds;
        (void)runUntil([&] { return s_capture->now() >= end; });
    }

    // A sine of amplitude `level`, encoded as `name` and `codec` say.
    static QString tone(const QString& name, double seconds, const QStringList& codec = {},
                        double frequency = 441, int rate = 44100) {
        const QString path = s_folder->filePath(name);
        if (QFile::exists(path))
            return path;
        const QString source = QStringLiteral("aevalsrc=exprs=0.5*sin(2*PI*%1*t):s=%2:d=%3")
                                   .arg(frequency)
                                   .arg(rate)
                                   .arg(seconds);
        const QStringList arguments =
            QStringList{QStringLiteral("-v"),    QStringLiteral("error"), QStringLiteral("-f"),
                        QStringLiteral("lavfi"), QStringLiteral("-i"),    source} +
            codec + QStringList{path};
        EXPECT_EQ(QProcess::execute(QStringLiteral("ffmpeg"), arguments), 0) << qPrintable(name);
        return path;
    }

    std::unique_ptr<Sound> loaded(const QString& path) {
        auto sound = m_player.soundWithContentsOfFile(path);
        bool known = false;
        sound->whenLoaded([&] { known = true; });
        EXPECT_TRUE(runUntil([&] { return known; }));
        return sound;
    }

    // Silence with a tone from `begin` to `end`.
    static QString island(const QString& name, double begin, double end, double length) {
        const QString gate = QStringLiteral("volume=volume='between(t,%1,%2)':eval=frame")
                                 .arg(begin)
                                 .arg(end - 1e-6);
        return tone(name, length,
                    {QStringLiteral("-af"), QStringLiteral("asetnsamples=49,") + gate});
    }

    // One sound and what comes of it.
    struct Playing {
        Playing(SoundEngineTest& test_, const QString& path_)
            : test(test_)
            , path(path_)
            , from(s_capture->now())
            , sound(test.m_player.soundWithContentsOfFile(path)) {}

        bool start() {
            sound->setFinished([this](bool whole) { ends << whole; });
            return sound->play();
        }
        std::vector<SinkCapture::Burst> heardToTheEnd() {
            EXPECT_TRUE(test.runUntil([&] { return !ends.isEmpty(); }));
            test.runFor(0.15);
            return s_capture->bursts(from);
        }

        SoundEngineTest& test;
        const QString path;
        const double from;
        std::unique_ptr<Sound> sound;
        QList<bool> ends;
    };

    static std::unique_ptr<QTemporaryDir> s_folder;
    static std::unique_ptr<SinkCapture> s_capture;
    QtRunLoop m_loop;
    ModuleSoundPlayer m_player{m_loop, QStringLiteral(DORVANE_SOUND_MODULE)};
};

std::unique_ptr<QTemporaryDir> SoundEngineTest::s_folder;
std::unique_ptr<SinkCapture> SoundEngineTest::s_capture;

// Must come first: it is about the first sound of the process.
TEST_F(SoundEngineTest, firstSoundIsHeardSoonAndTheNextSooner) {
    const QString path = tone(QStringLiteral("short.wav"), 0.3);
    for (const double limit : {0.2, 0.06, 0.06}) {
        Playing playing(*this, path);
        ASSERT_TRUE(playing.start());
        const auto heard = playing.heardToTheEnd();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_LT(heard[0].begin - playing.from, limit);
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
    printf("played %d begin %f end %f\n", int(played.count()), heard[0].begin - playing.from,
           heard[0].end - playing.from);
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
        EXPECT_LT(heard[0].begin - playing.from, 0.1);
        EXPECT_NEAR(heard[0].length(), 0.3, 0.02);
        EXPECT_EQ(playing.sound->currentTime().count(), 0) << "a new play starts at the beginning";
    }

    Playing playing(*this, island(QStringLiteral("island.wav"), 2, 3, 3.5));
    ASSERT_TRUE(playing.start());
    runFor(0.3);
    EXPECT_NEAR(playing.sound->currentTime().count(), 0.3, 0.06);
    playing.sound->setCurrentTime(Sound::Seconds(2.5));
    EXPECT_EQ(playing.sound->currentTime().count(), 2.5);
    runFor(0.2);
    playing.sound->pause();
    EXPECT_TRUE(playing.sound->isPlaying());
    runFor(0.1);
    const auto paused = playing.sound->currentTime();
    EXPECT_NEAR(paused.count(), 2.7, 0.06);
    runFor(0.3);
    EXPECT_EQ(playing.sound->currentTime(), paused);
    playing.sound->resume();
    const auto heard = playing.heardToTheEnd();
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_NEAR(heard[1].begin - heard[0].end, 0.4, 0.06);
    EXPECT_NEAR(heard[0].length() + heard[1].length(), 0.5, 0.02);
    EXPECT_EQ(playing.ends, QList<bool>{true});
}

TEST_F(SoundEngineTest, whatCannotBePlayedSaysSoOnceWithItsName) {
    const auto file = [](const char* name, const QByteArray& contents) {
        const QString path = s_folder->filePath(QLatin1String(name));
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(contents) == contents.size());
        return path;
    };
    QFile mp3(tone(QStringLiteral("f.mp3"), 0.5));
    ASSERT_TRUE(mp3.open(QIODevice::ReadOnly));
    const QString pipe = s_folder->filePath(QStringLiteral("pipe.wav"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    const QString missing = QStringLiteral("/nowhere/to/be/found.mp3");
    const QString list = QStringLiteral("#EXTM3U\n") + mp3.fileName();
    for (const QString& path :
         {file("empty.mp3", {}), file("text.wav", "not a sound at all\n"),
          file("header.wav",
               QByteArray("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x44\xac\0\0", 28)),
          file("start.mp3", mp3.readAll().left(90)), file("list.m3u8", list.toUtf8()), missing,
          s_folder->path(), pipe}) {
        SCOPED_TRACE(qPrintable(path));
        const LogCapture log;
        Playing playing(*this, path);
        int loadedTimes = 0;
        playing.sound->whenLoaded([&] { ++loadedTimes; });
        EXPECT_TRUE(playing.start()) << "not known yet";
        ASSERT_TRUE(runUntil([&] { return !playing.ends.isEmpty(); }));
        EXPECT_EQ(playing.ends, QList<bool>{false});
        EXPECT_EQ(loadedTimes, 1);
        EXPECT_EQ(playing.sound->duration().count(), 0);
        EXPECT_FALSE(playing.sound->play());
        ASSERT_EQ(log.messages().size(), 1) << qPrintable(log.messages().join(u'\n'));
        EXPECT_TRUE(log.messages()[0].contains(path)) << qPrintable(log.messages()[0]);
    }

    QFile whole(tone(QStringLiteral("f.wav"), 0.5));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    Playing half(*this, file("half.wav", whole.read(whole.size() / 2)));
    ASSERT_TRUE(half.start());
    EXPECT_EQ(half.heardToTheEnd().size(), 1U);
    EXPECT_EQ(half.ends, QList<bool>{true});
    EXPECT_NEAR(half.sound->duration().count(), 0.25, 0.01) << "what is there is played";
}

TEST_F(SoundEngineTest, longFilesNeverHoldUpTheMainThread) {
    // Hours of mp3 that say nothing about their length, and a large file.
    QFile piece(
        tone(QStringLiteral("piece.mp3"), 26.122449, // 1000 frames
             {QStringLiteral("-write_xing"), QStringLiteral("0"), QStringLiteral("-id3v2_version"),
              QStringLiteral("0"), QStringLiteral("-b:a"), QStringLiteral("64k")}));
    QFile hours(s_folder->filePath(QStringLiteral("hours.mp3")));
    ASSERT_TRUE(piece.open(QIODevice::ReadOnly) && hours.open(QIODevice::WriteOnly));
    const QByteArray frames = piece.readAll();
    for (int i = 0; i < 400; ++i)
        hours.write(frames);
    hours.close();
    const QString large =
        tone(QStringLiteral("large.wav"), 900, {QStringLiteral("-ac"), QStringLiteral("2")});

    for (const auto& [path, length] :
         {std::pair(hours.fileName(), 10450.0), std::pair(large, 900.0)}) {
        SCOPED_TRACE(qPrintable(path));
        QElapsedTimer step;
        qint64 longest = 0;
        const auto watched = [&](auto call) {
            step.start();
            call();
            longest = std::max(longest, step.elapsed());
        };
        std::unique_ptr<Sound> sound;
        watched([&] { sound = m_player.soundWithContentsOfFile(path); });
        watched([&] { EXPECT_TRUE(sound->play()); });
        const auto grid = m_loop.scheduleRepeating(
            2ms,
            [&] {
                longest = std::max(longest, step.elapsed());
                step.start();
            },
            RunLoopMode::Common);
        ASSERT_TRUE(runUntil([&] { return sound->duration().count() > 0; }));
        EXPECT_NEAR(sound->duration().count(), length, length * 0.01);
        const double from = s_capture->now();
        watched([&] { sound->setCurrentTime(Sound::Seconds(0.9 * length)); });
        ASSERT_TRUE(runUntil([&] { return sound->currentTime().count() > 0.9 * length + 0.1; }));
        EXPECT_LT(s_capture->now() - from, 3);
        watched([&] { sound.reset(); });
        EXPECT_LE(longest, 16);
    }
}

TEST_F(SoundEngineTest, missingServerIsReportedAndAReturnedOneIsUsed) {
    const QByteArray rig = qgetenv("PULSE_SERVER");
    const QString path = tone(QStringLiteral("short.wav"), 0.3);
    qputenv("PULSE_SERVER", "unix:/nope");
    Playing playing(*this, path);
    for (int round = 0; round < 2; ++round) {
        const LogCapture log;
        playing.ends.clear();
        ASSERT_TRUE(playing.start());
        ASSERT_TRUE(runUntil([&] { return !playing.ends.isEmpty(); }, 1s));
        EXPECT_EQ(playing.ends, QList<bool>{false});
        EXPECT_FALSE(playing.sound->isPlaying());
        EXPECT_EQ(log.messages().size(), 1) << qPrintable(log.messages().join(u'\n'));
    }
    qputenv("PULSE_SERVER", rig);
    playing.ends.clear();
    ASSERT_TRUE(playing.start());
    EXPECT_EQ(playing.heardToTheEnd().size(), 1U);
    EXPECT_EQ(playing.ends, QList<bool>{true});
}

TEST_F(SoundEngineTest, killedServerEndsThePlayAndTheNextPlayUsesItsSuccessor) {
    const QByteArray rig = qgetenv("PULSE_SERVER");
    const QString socket = s_folder->filePath(QStringLiteral("second"));
    const QStringList arguments{
        QStringLiteral("-n"),
        QStringLiteral("--daemonize=no"),
        QStringLiteral("--use-pid-file=no"),
        QStringLiteral("--exit-idle-time=-1"),
        QStringLiteral("-L"),
        QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket,
        QStringLiteral("-L"),
        QStringLiteral("module-null-sink")};
    const auto serve = [&](QProcess& server) {
        QFile::remove(socket);
        server.start(QStringLiteral("pulseaudio"), arguments);
        ASSERT_TRUE(runUntil([&] { return QFile::exists(socket); }));
    };
    qputenv("PULSE_SERVER", "unix:" + socket.toUtf8());
    Playing playing(*this, tone(QStringLiteral("long.wav"), 60));
    QProcess first;
    serve(first);
    ASSERT_TRUE(playing.start());
    ASSERT_TRUE(runUntil([&] { return playing.sound->currentTime().count() > 0; }));
    {
        const LogCapture log;
        first.kill();
        ASSERT_TRUE(runUntil([&] { return !playing.ends.isEmpty(); }));
        EXPECT_EQ(log.messages().size(), 1) << qPrintable(log.messages().join(u'\n'));
    }
    QProcess second;
    serve(second);
    ASSERT_TRUE(playing.start());
    EXPECT_TRUE(runUntil([&] { return playing.sound->currentTime().count() > 0; }));
    playing.sound->stop();
    runFor(0.3); // the fade is over
    EXPECT_EQ(playing.ends, (QList<bool>{false, false}));
    {
        const LogCapture log; // the connection that is kept is lost without a word
        for (QProcess* server : {&first, &second}) {
            server->kill();
            server->waitForFinished();
        }
        EXPECT_TRUE(log.messages().isEmpty()) << qPrintable(log.messages().join(u'\n'));
    }
    qputenv("PULSE_SERVER", rig);
}

TEST_F(SoundEngineTest, soundMayBeDestroyedAtAnyMomentAndFromItsCallbacks) {
    const QString path = tone(QStringLiteral("short.wav"), 0.3);
    for (const int delay : {0, 1, 2, 3, 5, 8, 20, 100, 250, 290, 310}) {
        auto sound = m_player.soundWithContentsOfFile(path);
        sound->whenLoaded([&] { EXPECT_TRUE(sound); });
        sound->setFinished([&](bool) { EXPECT_TRUE(sound); });
        ASSERT_TRUE(sound->play());
        runFor(delay / 1000.0);
        sound.reset();
    }
    auto sound = m_player.soundWithContentsOfFile(path);
    bool second = false;
    sound->whenLoaded([&] { sound.reset(); });
    sound->whenLoaded([&] { second = true; });
    ASSERT_TRUE(runUntil([&] { return !sound; }));
    EXPECT_FALSE(second);
    sound = loaded(path);
    sound->setFinished([&](bool) { sound.reset(); });
    ASSERT_TRUE(sound->play());
    EXPECT_TRUE(runUntil([&] { return !sound; }));
    runFor(0.4); // nothing that was left behind comes to life
}

TEST_F(SoundEngineTest, thousandRoundsLeaveNothingBehind) {
    struct Held {
        qint64 kilobytes = 0;
        qsizetype threads = 0;
        qsizetype descriptors = 0;
    };
    const auto held = [] {
        QFile statm(QStringLiteral("/proc/self/statm"));
        EXPECT_TRUE(statm.open(QIODevice::ReadOnly));
        const auto count = [](const char* folder) {
            return QDir(QLatin1String(folder))
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                .size();
        };
        return Held{statm.readAll().split(' ')[1].toLongLong() * 4, count("/proc/self/task"),
                    count("/proc/self/fd")};
    };
    const QString path = tone(QStringLiteral("f.mp3"), 0.5);
    const auto rounds = [&](int count) {
        for (int i = 0; i < count; ++i) {
            auto sound = loaded(path);
            ASSERT_TRUE(sound->play());
            ASSERT_TRUE(runUntil([&] { return sound->currentTime().count() > 0; }));
            sound->stop();
        }
        runFor(0.5);
    };
    rounds(100);
    const Held before = held();
    rounds(1000);
    const Held after = held();
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.descriptors, before.descriptors);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
    EXPECT_LE(after.kilobytes, before.kilobytes + 2048);
#endif
}

TEST_F(SoundEngineTest, moduleThatCannotBeLoadedMakesEmptySounds) {
    ModuleSoundPlayer broken(m_loop, QStringLiteral("/nowhere/dorvane_sound.so"));
    for (int round = 0; round < 2; ++round) {
        const LogCapture log;
        const auto sound = broken.soundWithContentsOfFile(tone(QStringLiteral("short.wav"), 0.3));
        QList<bool> ends;
        sound->setFinished([&](bool whole) { ends << whole; });
        EXPECT_TRUE(sound->play());
        ASSERT_TRUE(runUntil([&] { return !ends.isEmpty(); }));
        EXPECT_EQ(ends, QList<bool>{false});
        EXPECT_EQ(log.messages().size(), 1);
    }
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/SoundEngineFixture.h"
#include "tests/support/LogCapture.h"

#include <QDir>

#include <malloc.h>
#include <sys/stat.h>

using namespace dorvane;
using dorvane::testing::LogCapture;
using dorvane::testing::SinkCapture;
using namespace std::chrono_literals;

namespace {

class SoundEngineFaultsTest : public dorvane::testing::SoundEngineFixture {};

TEST_F(SoundEngineFaultsTest, whatCannotBePlayedSaysSoOnceWithItsName) {
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

TEST_F(SoundEngineFaultsTest, longFilesNeverHoldUpTheMainThread) {
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
        ASSERT_TRUE(runUntil([&] { return sound->duration().count() > 0; }));
        EXPECT_NEAR(sound->duration().count(), length, length * 0.01);
        const double from = s_capture->now();
        watched([&] { sound->setCurrentTime(Sound::Seconds(0.9 * length)); });
        ASSERT_TRUE(runUntil([&] { return sound->currentTime().count() > 0.9 * length + 0.1; }));
        EXPECT_LT(s_capture->now() - from, 3 * patience());
        watched([&] { sound.reset(); });
        EXPECT_LE(longest, 16) << "milliseconds";
    }
}

TEST_F(SoundEngineFaultsTest, missingServerIsReportedAndAReturnedOneIsUsed) {
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

TEST_F(SoundEngineFaultsTest, killedServerEndsThePlayAndTheNextPlayUsesItsSuccessor) {
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

TEST_F(SoundEngineFaultsTest, soundMayBeDestroyedAtAnyMomentAndFromItsCallbacks) {
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

TEST_F(SoundEngineFaultsTest, thousandRoundsLeaveNothingBehind) {
    struct Held {
        qint64 bytes = 0;
        qsizetype threads = 0;
        qsizetype descriptors = 0;
    };
    const auto held = [] {
        const auto count = [](const char* folder) {
            return QDir(QLatin1String(folder))
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                .size();
        };
        // What is allocated: the resident size goes up and down with the allocator's moods.
        const auto heap = mallinfo2();
        return Held{static_cast<qint64>(heap.uordblks + heap.hblkhd), count("/proc/self/task"),
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
        (void)runUntil([] { return false; }, 500ms); // the last fades
    };
    s_capture.reset();                              // it grows
    std::vector<std::unique_ptr<Sound>> atOnce(16); // every thread there may be
    for (auto& sound : atOnce)
        sound = m_player.soundWithContentsOfFile(path);
    atOnce.clear();
    rounds(200);
    const Held before = held();
    rounds(1000);
    (void)runUntil([&] { return held().descriptors <= before.descriptors; });
    const Held after = held();
    s_capture = std::make_unique<SinkCapture>();
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.descriptors, before.descriptors);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
    EXPECT_LE(after.bytes, before.bytes + 200 * 1000);
#endif
}

TEST_F(SoundEngineFaultsTest, moduleThatCannotBeLoadedMakesEmptySounds) {
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

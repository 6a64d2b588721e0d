// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/SoundEngineFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <sys/stat.h>

using namespace dorvane::testing;

namespace {

class SoundEngineFaultsTest : public dorvane::testing::SoundEngineFixture {
protected:
    QString file(const char* name, const QByteArray& contents) {
        QString path = m_folder.filePath(QLatin1String(name));
        writeFile(path, contents);
        return path;
    }
    // The streams that the server holds for us.
    static qsizetype streams() {
        return run(u"pactl list short sink-inputs"_qs).count(QLatin1String("float32"));
    }
};

TEST_F(SoundEngineFaultsTest, whatCannotBePlayedSaysSoOnceWithItsName) {
    const QString mp3 = tone("f.mp3", 0.5);
    const QString pipe = m_folder.filePath(u"pipe.wav"_qs);
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    // What its header says of a file decides how much memory its samples take.
    const QByteArray tenSeconds = contentsOf(tone("ten.wav", 10, "-bitexact"));
    const auto wave = [&](qsizetype at, const QByteArray& value) {
        return QByteArray(tenSeconds).replace(at, value.size(), value);
    };
    const QByteArray none(4, '\0');
    for (const QString& path :
         {file("one hertz.wav", wave(24, QByteArray("\1\0\0\0", 4))),
          file("gigahertz.wav", wave(24, QByteArray("\0\0\0\x40", 4))),
          file("70 channels.wav",
               wave(22, QByteArray("\x46\0", 2)).replace(32, 2, QByteArray("\x8c\0", 2))),
          file("no samples.wav", tenSeconds.left(40) + none), file("empty.mp3", {}),
          file("text.wav", "not a sound at all\n"), file("start.mp3", contentsOf(mp3).left(90)),
          file("list.m3u8", "#EXTM3U\n" + mp3.toUtf8()), u"/nowhere/to/be/found.mp3"_qs,
          m_folder.path(), pipe}) {
        SCOPED_TRACE(qPrintable(path));
        const LogCapture log;
        Playing playing(*this, path);
        EXPECT_TRUE(playing.start()) << "not known yet";
        ASSERT_TRUE(until([&] { return !playing.ends.isEmpty(); }));
        EXPECT_EQ(playing.ends, QList<bool>{false});
        EXPECT_TRUE(playing.isLoaded);
        EXPECT_EQ(playing.sound->duration().count(), 0);
        EXPECT_FALSE(playing.sound->play());
        ASSERT_EQ(log.messages().size(), 1) << qPrintable(log.messages().join(u'\n'));
        EXPECT_TRUE(log.messages()[0].contains(path)) << qPrintable(log.messages()[0]);
    }

    const QByteArray whole = contentsOf(tone("f.wav", 0.5));
    Playing half(*this, file("half.wav", whole.left(whole.size() / 2)));
    ASSERT_TRUE(half.start());
    EXPECT_EQ(half.heardToTheEnd().size(), 1U);
    EXPECT_NEAR(half.sound->duration().count(), 0.25, 0.01) << "what is there is played";
}

// Two gigabytes of silence behind a second of tone, on a disk that need not hold them.
TEST_F(SoundEngineFaultsTest, hoursOfSoundAreNeitherHeldInMemoryNorWaitedFor) {
    constexpr qint64 size = 2'000'000'000;
    QByteArray wave = contentsOf(tone("start.wav", 1, "-bitexact"));
    const auto patch = [&](qsizetype at, quint32 value) {
        wave.replace(at, 4, reinterpret_cast<const char*>(&value), 4);
    };
    patch(4, size - 8);
    patch(40, size - 44);
    const QString path = file("hours.wav", wave);
    ASSERT_TRUE(QFile::resize(path, size));
    const double length = (size - 44) / 88200.0;
    const auto resident = [] {
        return contentsOf(u"/proc/self/statm"_qs).split(' ')[1].toLongLong() * 4096;
    };

    const qint64 before = resident();
    std::vector<std::unique_ptr<Sound>> left; // as a slider does
    left.reserve(20);
    for (int i = 0; i < 20; ++i)
        left.push_back(m_player.soundWithContentsOfFile(path));
    Playing playing(*this, path);
    ASSERT_TRUE(playing.load());
    EXPECT_NEAR(playing.sound->duration().count(), length, 0.01);
    ASSERT_TRUE(playing.start());
    playing.sound->setCurrentTime(Sound::Seconds(0.9 * length));
    ASSERT_TRUE(until([&] { return playing.sound->currentTime().count() > 0.9 * length + 0.1; }));
    EXPECT_LT(m_capture.now() - playing.from, 1 * patience());
    EXPECT_LT(resident() - before, 400'000'000) << "a sanitizer keeps what was freed for a while";
}

TEST_F(SoundEngineFaultsTest, missingServerIsReportedAndAReturnedOneIsUsed) {
    const QByteArray rig = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nope");
    Playing playing(*this, tone("short.aiff", 0.3));
    for (int round = 0; round < 2; ++round) {
        const LogCapture log;
        playing.ends.clear();
        ASSERT_TRUE(playing.start());
        ASSERT_TRUE(until([&] { return !playing.ends.isEmpty(); }));
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

// A stop meets a stream that is being made, one that plays, one that has ended; the sound that
// asked for it may be gone, and so may the one whose callback this is.
TEST_F(SoundEngineFaultsTest, soundsLeftAtAnyMomentLeaveNothingBehind) {
    const auto held = [](const char* folder) {
        return QDir(QLatin1String(folder)).entryList(QDir::AllEntries | QDir::System).size();
    };
    const QString path = tone("short.aiff", 0.3);
    Playing kept(*this, path);
    ASSERT_TRUE(kept.load());
    const auto round = [&](int i) {
        auto sound = m_player.soundWithContentsOfFile(path);
        sound->setFinished([&](bool) { sound.reset(); });
        EXPECT_TRUE(sound->play());
        EXPECT_TRUE(kept.sound->play());
        if (i % 3 == 0)
            kept.sound->pause();
        QTest::qWait(i % 50 == 0 ? 320 : i % 7);
        if (i % 3 == 0)
            kept.sound->resume();
        kept.sound->stop();
    };
    for (int i = 0; i < 20; ++i)
        round(i);
    const auto threads = held("/proc/self/task");
    const auto descriptors = held("/proc/self/fd");
    for (int i = 0; i < 300; ++i)
        round(i);
    EXPECT_TRUE(until([&] { return streams() == 0; })) << streams() << " streams without an owner";
    EXPECT_LE(held("/proc/self/task"), threads + 2) << "loading threads come and go";
    EXPECT_LE(held("/proc/self/fd"), descriptors + 2) << "and so do the files they read";
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/ModuleSoundPlayer.h"
#include "platform/linux/QtRunLoop.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SinkCapture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>

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

    static std::unique_ptr<QTemporaryDir> s_folder;
    static std::unique_ptr<SinkCapture> s_capture;
    QtRunLoop m_loop;
    ModuleSoundPlayer m_player{m_loop, QStringLiteral(DORVANE_SOUND_MODULE)};
};

std::unique_ptr<QTemporaryDir> SoundEngineTest::s_folder;
std::unique_ptr<SinkCapture> SoundEngineTest::s_capture;

TEST_F(SoundEngineTest, firstSoundIsHeardSoonAndTheNextSooner) {
    const QString path = tone(QStringLiteral("short.wav"), 0.3);
    for (const double limit : {0.2, 0.06, 0.06}) {
        const double from = s_capture->now();
        const auto sound = m_player.soundWithContentsOfFile(path);
        ASSERT_TRUE(sound->play());
        bool completed = false;
        sound->setFinished([&](bool whole) { completed = whole; });
        ASSERT_TRUE(runUntil([&] { return completed; }));
        runFor(0.05);
        const auto heard = s_capture->bursts(from);
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_LT(heard[0].begin - from, limit);
        EXPECT_NEAR(heard[0].length(), 0.3, 0.002);
        printf("start %.4f\n", heard[0].begin - from);
    }
}

} // namespace

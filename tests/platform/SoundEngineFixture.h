// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "tests/support/SinkCapture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

namespace dorvane::testing {

// The real engine, a real server and a null sink that is listened to; run by the sound rig.
class SoundEngineFixture : public ::testing::Test {
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

    // The end of one test must not be heard in the next.
    void TearDown() override { runFor(0.3); }

    // Runs the loop until `done`; false after `limit`.
    bool runUntil(const std::function<bool()>& done,
                  std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        QElapsedTimer waited;
        waited.start();
        const auto wake = m_loop.scheduleRepeating(
            std::chrono::milliseconds(1), [] {}, RunLoopMode::Common);
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
        const QStringList arguments = QStringList{QStringLiteral("-nostdin"),
                                                  QStringLiteral("-v"),
                                                  QStringLiteral("error"),
                                                  QStringLiteral("-f"),
                                                  QStringLiteral("lavfi"),
                                                  QStringLiteral("-i"),
                                                  source} +
                                      codec + QStringList{path};
        EXPECT_EQ(QProcess::execute(QStringLiteral("ffmpeg"), arguments), 0) << qPrintable(name);
        return path;
    }

    // How much longer something may take that has to share the machine with others.
    static double patience() {
        double load = 0;
        getloadavg(&load, 1);
        return std::max(1.0, 2 * load / std::thread::hardware_concurrency());
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
        Playing(SoundEngineFixture& test_, const QString& path_)
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

        SoundEngineFixture& test;
        const QString path;
        const double from;
        std::unique_ptr<Sound> sound;
        QList<bool> ends;
    };

    inline static std::unique_ptr<QTemporaryDir> s_folder;
    inline static std::unique_ptr<SinkCapture> s_capture;
    QtRunLoop m_loop;
    ModuleSoundPlayer m_player{m_loop, QStringLiteral(DORVANE_SOUND_MODULE)};
};

} // namespace dorvane::testing

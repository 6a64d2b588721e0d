// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "tests/support/Run.h"
#include "tests/support/SinkCapture.h"
#include "tests/support/Testing.h"

#include <QTest>

#include <cstdlib>
#include <thread>

namespace dorvane::testing {

// The real engine, a real server and a null sink that is listened to; run by the sound rig.
class SoundEngineFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_capture.isRunning()) << "run this program through tests/support/sound-rig";
    }

    // The end of one test must not be heard in the next.
    void TearDown() override { runFor(0.3); }

    static bool until(const std::function<bool()>& done) { return QTest::qWaitFor(done, 10'000); }
    void runFor(double seconds) {
        const double end = m_capture.now() + seconds;
        (void)until([&] { return m_capture.now() >= end; });
    }

    // A sine of amplitude 0.5 from `begin` to the end, encoded as the name and `codec` say.
    QString tone(const char* name, double seconds, const char* codec = "", double begin = 0) {
        QString path = m_folder.filePath(QLatin1String(name));
        const auto command = u"ffmpeg -nostdin -v error -f lavfi -i "
                             "aevalsrc=0.5*sin(2*PI*441*t)*gte(t\\,%1):d=%2 %3 %4"_qs;
        if (!QFile::exists(path))
            run(command.arg(begin).arg(seconds).arg(QLatin1String(codec), path));
        return path;
    }

    // How much longer something may take that has to share the machine with others.
    static double patience() {
        double load = 0;
        getloadavg(&load, 1);
        return std::max(1.0, 2 * load / std::thread::hardware_concurrency());
    }

    // One sound and what comes of it.
    struct Playing {
        Playing(SoundEngineFixture& test_, const QString& path)
            : test(test_), sound(test.m_player.ringWithContentsOfFile(path)) {
            sound->setFinished([this](bool whole) { ends << whole; });
            sound->whenLoaded([this] { isLoaded = true; });
        }

        bool load() {
            return test.until([&] { return isLoaded; });
        }
        bool start() {
            from = test.m_capture.now();
            return sound->play();
        }
        std::vector<SinkCapture::Burst> heardToTheEnd() {
            EXPECT_TRUE(test.until([&] { return !ends.isEmpty(); }));
            test.runFor(0.15);
            return test.m_capture.bursts(from);
        }

        SoundEngineFixture& test;
        double from = 0;
        bool isLoaded = false;
        std::unique_ptr<Sound> sound;
        QList<bool> ends;
    };

    QTemporaryDir m_folder;
    SinkCapture m_capture;
    QtRunLoop m_loop;
    ModuleSoundPlayer m_player{m_loop, QStringLiteral(DORVANE_SOUND_MODULE)};
};

} // namespace dorvane::testing

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/HungDisk.h"

#include "platform/linux/sound/SoundLoader.h"
#include "tests/platform/SoundEngineFixture.h"
#include "tests/support/Files.h"

#include <optional>

using namespace dorvane::testing;

namespace {

class HungDiskTest : public SoundEngineFixture {
protected:
    QString hung(const char* name, double seconds) {
        QDir(m_folder.path()).mkdir(u"hung"_qs);
        return tone(qPrintable(u"hung/"_qs + QLatin1String(name)), seconds);
    }
};

TEST_F(HungDiskTest, filesThatNeverAnswerKeepNoOtherRingSilent) {
    const QString good = tone("good.wav", 0.3);
    const QString standIn = tone("stand-in.wav", 0.3);
    m_player.keepInMemory(standIn);
    Playing before(*this, standIn); // behind it on the same threads
    ASSERT_TRUE(before.load());
    runFor(0.5);
    const std::vector<QString> dead{hung("1.wav", 1), hung("2.wav", 1), hung("3.wav", 1)};
    const LogCapture log;
    std::vector<std::unique_ptr<Playing>> waiting;
    std::optional<HungDisk> disk(std::in_place);
    for (const QString& path : dead)
        waiting.push_back(std::make_unique<Playing>(*this, path));
    for (const auto& each : waiting)
        EXPECT_TRUE(each->start());

    Playing kept(*this, standIn);
    ASSERT_TRUE(kept.start());
    const auto atOnce = kept.heardToTheEnd();
    ASSERT_EQ(atOnce.size(), 1U);
    EXPECT_LT(atOnce[0].begin - kept.from, 2.5) << "before any thread was replaced";
    Playing later(*this, good);
    ASSERT_TRUE(later.start());
    EXPECT_EQ(later.heardToTheEnd().size(), 1U) << "as soon as a thread was replaced";
    Playing again(*this, dead[0]); // takes no thread
    ASSERT_TRUE(again.start());
    EXPECT_EQ(log.messages().filter(u"another takes its place"_qs).size(), 3)
        << qPrintable(log.messages().join(u'\n'));
    for (const auto& each : waiting)
        each->sound->stop();
    disk.reset();
    EXPECT_EQ(again.heardToTheEnd().size(), 1U) << "the disk is back";
}

// Long files are read while they play.
TEST_F(HungDiskTest, longSoundOnASlowDiskPausesAloneAndGoesOnWhenItAnswers) {
    const QString good = tone("good.wav", 0.3);
    const LogCapture log; // says that it waits, and at last that it gives up
    Playing slow(*this, hung("long.wav", 60));
    ASSERT_TRUE(slow.load());
    std::optional<HungDisk> disk(std::in_place);
    ASSERT_TRUE(slow.start());
    runFor(1.5);
    Playing ring(*this, good);
    ASSERT_TRUE(ring.start());
    EXPECT_EQ(ring.heardToTheEnd().size(), 1U);
    EXPECT_TRUE(slow.ends.isEmpty());
    disk.reset();
    const double from = m_capture.now();
    EXPECT_TRUE(until([&] { return m_capture.bursts(from).size() == 1; })) << "it goes on";
    slow.sound->stop();
    runFor(0.5);

    Playing dead(*this, hung("long.wav", 60));
    ASSERT_TRUE(dead.load());
    disk.emplace();
    ASSERT_TRUE(dead.start());
    EXPECT_TRUE(until([&] { return !dead.ends.isEmpty(); })) << "not for ever";
    EXPECT_EQ(dead.ends, QList<bool>{false});
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/SingleInstance.h"

#include "platform/linux/session/LaunchRequest.h"
#include "tests/support/BusTest.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"

#include <QElapsedTimer>

#include <future>

using namespace dorvane::testing;
using Standing = SingleInstance::Standing;

namespace {

const LaunchRequest plain;
const LaunchRequest action{u"new-alarm"_qs, {}};
const LaunchRequest open{QString(), {u"dorvane:a%20b"_qs, u"dorvane:ü"_qs}};

// Whether the instances meet on a bus.
class SingleInstanceTest : public BusTest, public ::testing::WithParamInterface<bool> {
protected:
    [[nodiscard]] QString bus() const { return GetParam() ? m_address : u"unix:path=/none"_qs; }

    // A second launch, whose process would wait meanwhile; this one runs its loop if it `answers`.
    Standing launch(const LaunchRequest& request, bool answers = true) {
        auto standing = std::async(std::launch::async, [&] {
            ServedBus connection({}, bus());
            return SingleInstance(connection, m_folder.path()).claim(request);
        });
        const auto ended = [&] {
            return standing.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        EXPECT_TRUE(!answers || QTest::qWaitFor(ended));
        return standing.get();
    }

    QTemporaryDir m_folder;
};

TEST_P(SingleInstanceTest, laterLaunchesHandOverWhatTheyWereAskedFor) {
    ServedBus connection({}, bus());
    SingleInstance first(connection, m_folder.path());
    ASSERT_EQ(first.claim(plain), Standing::First);
    QList<LaunchRequest> requests;
    first.setRequested([&](const LaunchRequest& request) { requests << request; });
    for (const LaunchRequest& request : {plain, action, open})
        EXPECT_EQ(launch(request), Standing::Answered);
    EXPECT_EQ(requests, (QList<LaunchRequest>{plain, action, open}));
}

TEST_P(SingleInstanceTest, aHangingInstanceIsGivenUpAfterTwoSeconds) {
    ServedBus connection({}, bus());
    SingleInstance first(connection, m_folder.path());
    ASSERT_EQ(first.claim(plain), Standing::First);
    first.setRequested([](const LaunchRequest&) {});
    QElapsedTimer waited;
    waited.start();
    EXPECT_EQ(launch(plain, false), Standing::Unanswered);
    EXPECT_GE(waited.elapsed(), 1900);
    EXPECT_LT(waited.elapsed(), 10'000);
}

// One that ends while it is asked has done nothing; whoever asked is the next.
TEST_P(SingleInstanceTest, whoStartsDuringAnEndTakesThePlace) {
    auto connection = std::make_unique<ServedBus>(ServedBus::Callbacks(), bus());
    auto first = std::make_unique<SingleInstance>(*connection, m_folder.path());
    ASSERT_EQ(first->claim(plain), Standing::First);
    first->setRequested([](const LaunchRequest&) {});
    auto standing = std::async(std::launch::async, [&] {
        ServedBus own({}, bus());
        return SingleInstance(own, m_folder.path()).claim(action);
    });
    const auto lasts = std::chrono::milliseconds(100);
    EXPECT_EQ(standing.wait_for(lasts), std::future_status::timeout);
    first->leave();
    EXPECT_EQ(standing.wait_for(lasts), std::future_status::timeout) << "two write at once";
    first.reset();
    connection.reset();
    EXPECT_EQ(standing.get(), Standing::First);
}

INSTANTIATE_TEST_SUITE_P(Ways, SingleInstanceTest, ::testing::Bool(),
                         [](const auto& way) { return way.param ? "bus" : "lock"; });

TEST(InstanceLockTest, aCrashedInstanceLeavesNothingInTheWay) {
    const QTemporaryDir folder;
    for (const char* suffix : {".lock", ".socket"}) // what it left behind, no longer locked
        writeFile(folder.filePath(u"com.brackenfold.Dorvane"_qs) + QLatin1String(suffix));
    InstanceLock lock(folder.path());
    EXPECT_TRUE(lock.acquire());
    InstanceLock second(folder.path());
    EXPECT_FALSE(second.acquire());
}

} // namespace

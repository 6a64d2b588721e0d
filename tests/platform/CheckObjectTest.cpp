// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/checks/CheckObject.h"

#include "platform/linux/session/KernelWakeAlarm.h"
#include "tests/support/BusTest.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <QRegularExpression>
#include <QTest>

#include <future>

using namespace dorvane::testing;

namespace {

class CheckObjectTest : public BusTest {
protected:
    // The answer to another program, which waits for it.
    CheckAnswer asked() {
        auto answer = std::async(std::launch::async, [this] { return askInstance(m_ours, true); });
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return answer.wait_for(0s) == std::future_status::ready; }));
        return answer.get();
    }
};

TEST_F(CheckObjectTest, answersLaterAndWhoeverIsNotThereIsToldFromWhoIsSilent) {
    EXPECT_EQ(asked().from, CheckAnswer::From::Nobody);
    ASSERT_TRUE(m_theirs.registerService(u"com.brackenfold.Dorvane"_qs));
    EXPECT_EQ(asked().from, CheckAnswer::From::Silence) << "one that is too old for this";
    std::function<void()> later;
    ASSERT_TRUE(m_theirs.unregisterService(u"com.brackenfold.Dorvane"_qs));
    ServedBus bus({}, m_address);
    ASSERT_GT(sd_bus_request_name(bus.get(), "com.brackenfold.Dorvane", 0), 0);
    const CheckObject object(bus, [&](bool plays, const auto& done) {
        EXPECT_TRUE(plays);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [done] {
                done({{u"icon"_qs, u"fine"_qs, u"It is there."_qs, {}}});
            },
            Qt::QueuedConnection);
    });
    bus.flush();
    const CheckAnswer answer = asked();
    EXPECT_EQ(answer.from, CheckAnswer::From::Instance);
    ASSERT_EQ(answer.rows.size(), 1);
    EXPECT_EQ(answer.rows[0].name + answer.rows[0].line, u"iconIt is there."_qs);
}

// The seconds that are left of each timer that wakes the machine, as the kernel tells them.
std::vector<int> wakeTimers() {
    std::vector<int> left;
    const QDir folder(u"/proc/self/fdinfo"_qs);
    for (const QString& name : folder.entryList(QDir::Files)) {
        const QString info = QString::fromUtf8(contentsOf(folder.filePath(name)));
        static const QRegularExpression value(u"it_value: \\((\\d+),"_qs);
        if (info.contains(u"clockid: 8\n"_qs)) // CLOCK_REALTIME_ALARM
            left.push_back(value.match(info).captured(1).toInt());
    }
    return left;
}

TEST(KernelWakeAlarmTest, keepsOneTimerForTheMomentAndNoneForNone) {
    const QTemporaryDir clocks;
    KernelWakeAlarm alarm(clocks.path());
    if (alarm.ability() == WakeAlarm::Ability::NotPermitted)
        GTEST_SKIP() << "CAP_WAKE_ALARM is missing";
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const int seconds : {3600, 600}) {
        alarm.arm(now.addSecs(seconds));
        ASSERT_EQ(wakeTimers().size(), 1U);
        EXPECT_NEAR(wakeTimers().front(), seconds, 5);
    }
    EXPECT_EQ(alarm.ability(), WakeAlarm::Ability::NoClock) << "whatever timers the kernel takes";
    const QString wakes = clocks.filePath(u"rtc0/device/power/wakeup"_qs);
    for (const auto& [said, ability] : {std::pair{"disabled\n", WakeAlarm::Ability::NoClock},
                                        {"enabled\n", WakeAlarm::Ability::Able}}) {
        writeFile(wakes, said);
        EXPECT_EQ(alarm.ability(), ability) << said;
    }
    alarm.arm(std::nullopt);
    EXPECT_THAT(wakeTimers(), ElementsAre());
}

} // namespace

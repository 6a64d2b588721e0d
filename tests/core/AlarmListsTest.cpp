// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"
#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "core/StoredAlarms.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "tests/support/Dates.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/VirtualRunLoop.h"

#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;

namespace {

class NoDelegate final : public AlarmDelegate {
public:
    void alarmTriggered(const AlarmPtr&) override {}
};

// One run of the program after another on the same preferences.
class AlarmListsTest : public ::testing::Test {
protected:
    struct Run {
        explicit Run(const QDateTime& start, const QVariantMap& stored = {})
            : loop(start), defaults(stored) {}

        VirtualRunLoop loop;
        MemoryDefaults defaults;
        NotificationCenter notifications;
        LibplistFormat format;
        AlarmArchive archive{format, loop};
        Clock clock{loop, notifications};
        ActiveAlarms active{defaults, archive, loop, clock};
        StoredAlarms library{defaults, archive, loop};
        NoDelegate delegate;

        AlarmPtr start(const char* title, qint64 kind, const char* time, int minutes = 0) {
            const AlarmPtr alarm = Alarm::create(loop);
            alarm->setTitle(QString::fromUtf8(title));
            alarm->setSelRowNo(kind);
            alarm->setIsTimeWithDate(kind == Alarm::Dated);
            alarm->setIsMinuteUnits(true);
            alarm->setRingWithinUnits(minutes);
            if (time)
                alarm->setTime(at(time));
            if (kind == Alarm::Weekly)
                alarm->setWeekdays({Weekday::Monday, Weekday::Thursday});
            clock.insertAlarm(alarm);
            return alarm;
        }

        std::string running() const {
            std::string all;
            for (const AlarmPtr& alarm : clock.allAlarms())
                all += alarm->title().toStdString() + " " + text(alarm->time()) + "\n";
            return all;
        }
    };
};

TEST_F(AlarmListsTest, runningAlarmsComeBackInReverseAndOnlyThoseThatStillCount) {
    Run first(at("2026-11-23 06:00"));
    first.start("timer", Alarm::Relative, nullptr, 30);
    first.start("weekly", Alarm::Weekly, "2026-11-23 07:00");
    first.start("passes", Alarm::Dated, "2026-11-23 09:00");
    first.start("ahead", Alarm::Dated, "2026-11-25 07:00");
    first.active.storeActiveAlarms();

    Run second(at("2026-11-24 10:00"), first.defaults.written());
    second.active.restoreActiveAlarms(second.delegate);
    // A pending timer counts its minutes anew; a past one is gone, and so is the past date.
    EXPECT_EQ(second.running(), "weekly 2026-11-26T07:00:00+01:00\n"
                                "ahead 2026-11-25T07:00:00+01:00\n");

    Run soon(at("2026-11-23 06:10"), first.defaults.written());
    soon.active.restoreActiveAlarms(soon.delegate);
    EXPECT_EQ(soon.running(), "timer 2026-11-23T06:40:00+01:00\n"
                              "weekly 2026-11-23T07:00:00+01:00\n"
                              "passes 2026-11-23T09:00:00+01:00\n"
                              "ahead 2026-11-25T07:00:00+01:00\n");
    for (const AlarmPtr& alarm : soon.clock.allAlarms()) {
        EXPECT_EQ(alarm->delegate(), &soon.delegate);
        EXPECT_TRUE(alarm->isActive());
    }
}

TEST_F(AlarmListsTest, aRunThatDidNotQuitInOrderLeavesTheListOfTheLastThatDid) {
    Run first(at("2026-11-23 06:00"));
    first.start("kept", Alarm::Dated, "2026-11-25 07:00");
    first.active.storeActiveAlarms();
    Run crashed(at("2026-11-23 07:00"), first.defaults.written());
    crashed.active.restoreActiveAlarms(crashed.delegate);
    crashed.start("lost", Alarm::Dated, "2026-11-26 07:00");

    Run third(at("2026-11-23 08:00"), crashed.defaults.written());
    third.active.restoreActiveAlarms(third.delegate);
    EXPECT_EQ(third.running(), "kept 2026-11-25T07:00:00+01:00\n");
}

TEST_F(AlarmListsTest, libraryKeepsOneAlarmATitleInThePlaceOfTheFirst) {
    Run run(at("2026-11-23 06:00"));
    EXPECT_FALSE(run.library.alarms().has_value()) << "nothing was ever stored";
    const AlarmPtr tea = run.start("tea", Alarm::Relative, nullptr, 3);
    const AlarmPtr egg = run.start("egg", Alarm::Relative, nullptr, 5);
    run.library.put(*tea);
    run.library.put(*egg);
    tea->setRingWithinUnits(4);
    run.library.put(*tea);

    StoredAlarms other(run.defaults, run.archive, run.loop); // a second window
    other.removeAlarm(QStringLiteral("egg"));
    other.removeAlarm(QStringLiteral("never there"));
    egg->setRingWithinUnits(6);
    run.library.updateAlarmList(egg); // not there any more
    tea->setRingWithinUnits(7);
    run.library.updateAlarmList(tea);

    Run next(at("2026-11-23 08:00"), run.defaults.written());
    const auto stored = next.library.alarms();
    ASSERT_TRUE(stored.has_value());
    ASSERT_EQ(alarmTitles(*stored), QStringList{QStringLiteral("tea")});
    EXPECT_EQ(stored->front()->ringWithinUnits(), 7);
    EXPECT_FALSE(stored->front()->isActive());
}

TEST_F(AlarmListsTest, dataThatCannotBeReadIsKeptBeforeItIsWrittenOver) {
    const QByteArray data("not an archive");
    Run run(at("2026-11-23 06:00"), {{QStringLiteral("AcitveAlarmsStoredKey"), data}});
    const LogCapture log;
    run.active.restoreActiveAlarms(run.delegate);
    run.active.storeActiveAlarms();
    EXPECT_EQ(run.defaults.written().value(
                  QStringLiteral("AcitveAlarmsStoredKey.damaged-2026-11-23T06:00:00")),
              data);
    EXPECT_EQ(log.messages().filter(QStringLiteral("the data is kept")).size(), 1);
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Alarm.h"

#include "core/AlarmDelegate.h"
#include "tests/support/Dates.h"
#include "tests/support/VirtualRunLoop.h"
#include "tests/support/ZoneScope.h"

#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;

namespace {

class Reports final : public AlarmDelegate {
public:
    void alarmTriggered(const AlarmPtr& alarm) override { alarms.push_back(alarm); }
    std::vector<AlarmPtr> alarms;
};

TEST(AlarmTest, dueTimeOfEachKind) {
    struct Case {
        const char* name;
        qint64 kind;
        bool dated;
        bool minutes;
        qint64 units;
        const char* time;
        const char* runTime;
        int snooze;
        const char* expected;
    };
    // clang-format off
    const Case cases[] = {
        {"dated, seconds cut", 1, true, false, 0, "2026-11-24 07:00:45", nullptr, 0, "2026-11-24T07:00:00+01:00"},
        {"dated, snoozed", 1, true, false, 0, "2026-11-24 07:00:45", nullptr, 10, "2026-11-24T07:10:00+01:00"},
        {"dated over midnight", 1, true, false, 0, "2026-12-31 23:55", nullptr, 9, "2027-01-01T00:04:00+01:00"},
        {"dated, whatever the kind", 0, true, true, 5, "2026-11-24 07:00", nullptr, 0, "2026-11-24T07:00:00+01:00"},
        {"weekly, seconds kept", 2, false, false, 0, "2026-11-24 07:00:45", nullptr, 0, "2026-11-24T07:00:45+01:00"},
        {"unknown kind as weekly", 3, false, true, 5, "2026-11-24 07:00:45", nullptr, 0, "2026-11-24T07:00:45+01:00"},
        {"minutes", 0, false, true, 75, nullptr, "2026-11-24 09:00:30", 0, "2026-11-24T10:15:30+01:00"},
        {"hours", 0, false, false, 36, nullptr, "2026-11-24 09:00:30", 0, "2026-11-25T21:00:30+01:00"},
        {"never started", 0, false, true, 10, nullptr, nullptr, 0, "2026-11-21T08:10:00+01:00"},
        {"stored time of a relative one is not read", 0, false, true, 10, "2020-01-01 00:00", nullptr, 0, "2026-11-21T08:10:00+01:00"},
        {"no time", 1, true, false, 0, nullptr, nullptr, 0, "none"},
        {"ten million hours are bounded", 0, false, false, 9'999'999'999, nullptr, "2026-11-24 09:00", 0, "2227-04-25T10:00:00+02:00"},
        // A timer counts minutes that pass, on the nights when clocks are set as well.
        {"into the missing hour", 0, false, true, 90, nullptr, "2026-03-29 01:30", 0, "2026-03-29T04:00:00+02:00"},
        {"into the doubled hour", 0, false, true, 90, nullptr, "2026-10-25 01:45", 0, "2026-10-25T02:15:00+01:00"},
        {"snooze across the missing hour", 1, true, false, 0, "2026-03-29 01:55", nullptr, 10, "2026-03-29T03:05:00+02:00"},
    };
    // clang-format on
    for (const Case& c : cases) {
        VirtualRunLoop loop(at("2026-11-21 08:00"));
        const AlarmPtr alarm = Alarm::create(loop);
        alarm->setSelRowNo(c.kind);
        alarm->setIsTimeWithDate(c.dated);
        alarm->setIsMinuteUnits(c.minutes);
        alarm->setRingWithinUnits(c.units);
        if (c.time)
            alarm->setTime(at(c.time));
        if (c.runTime)
            alarm->setRunTime(at(c.runTime));
        alarm->snooze(c.snooze);
        EXPECT_EQ(text(alarm->time()), c.expected) << c.name;
    }
}

TEST(AlarmTest, timerStartedInTheSecondOfTwoEqualHoursRingsAfterItsMinutes) {
    // 02:30 in winter time, an hour after the 02:30 in summer time.
    VirtualRunLoop loop(at("2026-10-25T01:30:00Z"));
    const AlarmPtr alarm = Alarm::create(loop);
    alarm->setIsMinuteUnits(true);
    alarm->setRingWithinUnits(5);
    alarm->setRunTime(loop.now());
    EXPECT_EQ(text(alarm->time()), "2026-10-25T02:35:00+01:00");
}

TEST(AlarmTest, dueTimeIsTheSameMomentInEveryZone) {
    VirtualRunLoop loop(at("2026-03-28T12:00:00Z"));
    const AlarmPtr alarm = Alarm::initWithTime(loop, at("2026-03-29T05:00:30Z"), QString());
    alarm->setIsTimeWithDate(true);
    for (const char* name : {"Europe/Berlin", "Asia/Kathmandu", "America/St_Johns", "UTC"}) {
        const ZoneScope zone(name);
        EXPECT_EQ(alarm->time().toUTC(), at("2026-03-29T05:00:00Z")) << name;
    }
}

TEST(AlarmTest, reportsOnceLessThanAWholeSecondIsLeftUntilTriggered) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    Reports reports;
    const AlarmPtr alarm = Alarm::initWithTime(loop, at("2026-11-21 08:01"), QString());
    alarm->setIsTimeWithDate(true);
    alarm->setDelegate(&reports);
    const std::pair<RunLoop::Milliseconds, std::size_t> steps[] = {
        {58'999ms, 0}, {1ms, 0}, {1ms, 1}, {1s, 2}};
    for (const auto& [step, expected] : steps) {
        loop.advance(step);
        alarm->tick(instantOf(loop.now()));
        EXPECT_EQ(reports.alarms.size(), expected)
            << loop.now().toString(Qt::ISODateWithMs).toStdString();
    }
    alarm->setIsTriggered(true);
    alarm->tick(instantOf(loop.now()));
    EXPECT_EQ(reports.alarms.size(), 2u);
}

TEST(AlarmTest, minutesAndSecondsAreTruncatedTowardZero) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    const AlarmPtr alarm = Alarm::initWithTime(loop, at("2026-11-21 08:02"), QString());
    alarm->setIsTimeWithDate(true);
    const std::tuple<const char*, qint64, qint64> cases[] = {
        {"2026-11-21 08:00:00", 2, 0},
        {"2026-11-21 08:00:01", 1, 59},
        {"2026-11-21 08:02:00", 0, 0},
        {"2026-11-21 08:03:01", -1, -1},
    };
    for (const auto& [now, minutes, seconds] : cases) {
        loop.setWall(at(now));
        EXPECT_EQ(alarm->minutesFromNow(instantOf(loop.now())).minutes, minutes) << now;
        EXPECT_EQ(alarm->minutesFromNow(instantOf(loop.now())).seconds, seconds) << now;
    }
    EXPECT_EQ(alarm->minute(), 2);
}

TEST(AlarmTest, snoozesAddUpAndEveryNewStartForgetsThem) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    const AlarmPtr alarm = Alarm::initWithTime(loop, at("2026-11-21 07:00"), QString());
    alarm->setIsTimeWithDate(true);
    alarm->snooze(9);
    alarm->snooze(9);
    EXPECT_EQ(alarm->time(), at("2026-11-21 07:18"));
    alarm->setRunTime({});
    EXPECT_EQ(alarm->time(), at("2026-11-21 07:00"));
}

TEST(AlarmTest, copyTakesTheDueTimeAndLeavesWhatBelongsToRunning) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    Reports reports;
    const AlarmPtr alarm =
        Alarm::initWithTime(loop, at("2026-11-21 07:00:45"), QStringLiteral("Tea"));
    alarm->setIsTimeWithDate(true);
    alarm->setWeekdays({Weekday::Monday, Weekday::Sunday});
    alarm->setRunTime(at("2026-11-20 07:00"));
    alarm->setIsActive(true);
    alarm->setIsTriggered(true);
    alarm->setDelegate(&reports);
    alarm->snooze(10);

    const AlarmPtr copy = alarm->copy();
    EXPECT_EQ(copy->title(), QStringLiteral("Tea"));
    EXPECT_EQ(copy->storedTime(), at("2026-11-21 07:10"));
    EXPECT_EQ(copy->weekdays(), alarm->weekdays());
    EXPECT_FALSE(copy->storedRunTime().isValid());
    EXPECT_EQ(copy->snoozedMinutes(), 0u);
    EXPECT_FALSE(copy->isActive() || copy->isTriggered() || copy->delegate());
}

TEST(AlarmTest, comparesItsStoredTimeWithTheDueTimeOfTheOther) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    const AlarmPtr seven = Alarm::initWithTime(loop, at("2026-11-21 07:00:45"), QString());
    seven->setIsTimeWithDate(true);
    const AlarmPtr relative = Alarm::create(loop);
    EXPECT_EQ(seven->compare(*seven), std::weak_ordering::greater) << "stored seconds against none";
    EXPECT_EQ(seven->compare(*relative), std::weak_ordering::less);
    EXPECT_EQ(relative->compare(*seven), std::weak_ordering::equivalent) << "nothing stored";
}

TEST(AlarmTest, describesItselfWithAndWithoutATitle) {
    VirtualRunLoop loop(at("2026-11-21 08:00"));
    const AlarmPtr alarm = Alarm::create(loop);
    EXPECT_EQ(alarm->description(), QStringLiteral("Alarm at (null) (no reminder)"));
    alarm->setTime(at("2026-11-21 07:00"));
    alarm->setTitle(QStringLiteral("Tea %1"));
    EXPECT_EQ(alarm->description(),
              QStringLiteral("Alarm at 2026-11-21T07:00:00+01:00 (\"Tea %1\")"));
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Alarm.h"

#include "core/AlarmDelegate.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/ZoneScope.h"

#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;

namespace {

class Reports final : public AlarmDelegate {
public:
    void alarmTriggered(const AlarmPtr& /*alarm*/) override { ++count; }
    int count = 0;
};

Instant eight() {
    return instantOf(at("2026-11-21 08:00"));
}

TEST(AlarmTest, dueTimeOfEachKind) {
    constexpr auto dated = Alarm::Dated;
    constexpr auto weekly = Alarm::Weekly;
    const struct {
        const char* name;
        AlarmOf alarm;
        const char* due;
    } cases[] = {
        {"dated, seconds cut, snoozed over midnight",
         {.kind = dated, .time = "2026-12-31 23:55:45", .snoozed = 9},
         "2027-01-01T00:04:00+01:00"},
        {"weekly, seconds kept",
         {.kind = weekly, .time = "2026-11-24 07:00:45"},
         "2026-11-24T07:00:45+01:00"},
        {"unknown kind as weekly",
         {.kind = 3, .minutes = 5, .time = "2026-11-24 07:00:45"},
         "2026-11-24T07:00:45+01:00"},
        {"minutes", {.minutes = 75, .runTime = "2026-11-24 09:00:30"}, "2026-11-24T10:15:30+01:00"},
        {"hours", {.hours = 36, .runTime = "2026-11-24 09:00:30"}, "2026-11-25T21:00:30+01:00"},
        {"hours before the first start", {.hours = 2}, "2026-11-21T10:00:00+01:00"},
        {"stored time of a relative one is not read",
         {.minutes = 10, .time = "2020-01-01 00:00"},
         "2026-11-21T08:10:00+01:00"},
        {"no time", {.kind = dated}, "none"},
        {"ten million hours are bounded",
         {.hours = 9'999'999'999, .runTime = "2026-11-24 09:00"},
         "2226-11-24T21:00:00+01:00"},
        // Minutes are minutes that pass, hours are hours of the clock face.
        {"minutes over the missing hour",
         {.minutes = 90, .runTime = "2026-03-29 01:30"},
         "2026-03-29T04:00:00+02:00"},
        {"minutes into the doubled hour",
         {.minutes = 90, .runTime = "2026-10-25 01:45"},
         "2026-10-25T02:15:00+01:00"},
        {"snooze across the missing hour",
         {.kind = dated, .time = "2026-03-29 01:55", .snoozed = 10},
         "2026-03-29T03:05:00+02:00"},
        {"a short night",
         {.hours = 10, .runTime = "2026-03-28 22:00"},
         "2026-03-29T08:00:00+02:00"},
        {"a long night", {.hours = 10, .runTime = "2026-10-24 22:00"}, "2026-10-25T08:00:00+01:00"},
        {"hours, snoozed by minutes",
         {.hours = 4, .runTime = "2026-10-24 22:00", .snoozed = 90},
         "2026-10-25T02:30:00+01:00"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.alarm.alarm()->time(eight())), c.due) << c.name;
}

// A rhythm of hours through the nights on which clocks are set: on and on, never at once.
TEST(AlarmTest, hoursKeepTheirTimeOfDay) {
    const struct {
        const char* zone;
        const char* start;
        qint64 hours;
        const char* dues[3];
    } cases[] = {
        {"Europe/Berlin",
         "2026-03-28T06:00:00Z",
         24,
         {"03-29 07:00+02", "03-30 07:00+02", "03-31 07:00+02"}},
        {"Europe/Berlin",
         "2026-10-24T05:00:00Z",
         24,
         {"10-25 07:00+01", "10-26 07:00+01", "10-27 07:00+01"}},
        {"Europe/Berlin",
         "2026-03-29T00:30:00Z",
         1,
         {"03-29 03:30+02", "03-29 04:30+02", "03-29 05:30+02"}},
        {"Europe/Berlin",
         "2026-10-24T23:30:00Z",
         1,
         {"10-25 02:30+02", "10-25 03:30+01", "10-25 04:30+01"}},
        {"Europe/Berlin",
         "2026-10-25T01:30:00Z",
         1, // the second 02:30
         {"10-25 03:30+01", "10-25 04:30+01", "10-25 05:30+01"}},
        {"Australia/Lord_Howe",
         "2026-04-04T14:45:00Z",
         1,
         {"04-05 02:45+10", "04-05 03:45+10", "04-05 04:45+10"}},
        {"Antarctica/Troll",
         "2026-10-25T01:30:00Z",
         1, // two hours come twice: the second 01:30
         {"10-25 02:30Z", "10-25 03:30Z", "10-25 04:30Z"}},
    };
    for (const auto& c : cases) {
        const ZoneScope zone(c.zone);
        const AlarmPtr alarm = AlarmOf{.hours = c.hours}.alarm();
        alarm->setRunTime(at(c.start));
        for (const char* expected : c.dues) {
            const QDateTime due = alarm->time(eight());
            EXPECT_EQ(due.toString(QStringLiteral("MM-dd HH:mm")).toStdString() +
                          text(due).substr(19, 3),
                      expected)
                << c.zone << " " << c.start;
            alarm->setRunTime(due);
        }
    }
}

TEST(AlarmTest, anotherZoneMovesNothing) {
    const ZoneScope zone("Europe/Berlin");
    for (const AlarmOf& values : {AlarmOf{.kind = Alarm::Dated, .time = "2026-03-29 07:00:30"},
                                  AlarmOf{.hours = 9, .runTime = "2026-03-28 22:00"}}) {
        const AlarmPtr alarm = values.alarm();
        for (const char* name : {"Asia/Kathmandu", "America/St_Johns", "UTC"}) {
            const ZoneScope other(name);
            EXPECT_EQ(alarm->time(eight()).toUTC(), at("2026-03-29T05:00:00Z")) << name;
        }
    }
}

TEST(AlarmTest, reportsOnceLessThanAWholeSecondIsLeftUntilTriggered) {
    Reports reports;
    const AlarmPtr alarm = AlarmOf{.kind = Alarm::Dated, .time = "2026-11-21 08:01"}.alarm();
    alarm->setDelegate(&reports);
    const std::pair<std::chrono::milliseconds, int> looks[] = {
        {58'999ms, 0}, {59s, 0}, {59'001ms, 1}, {60s, 2}};
    for (const auto& [since, expected] : looks) {
        alarm->tick(eight() + since);
        EXPECT_EQ(reports.count, expected) << since.count();
    }
    alarm->setIsTriggered(true);
    alarm->tick(eight() + 60s);
    EXPECT_EQ(reports.count, 2);
}

TEST(AlarmTest, minutesAndSecondsAreTruncatedTowardZero) {
    const AlarmPtr alarm = AlarmOf{.kind = Alarm::Dated, .time = "2026-11-21 08:02"}.alarm();
    const std::tuple<std::chrono::milliseconds, qint64, qint64> cases[] = {
        {0s, 2, 0}, {500ms, 1, 59}, {120'900ms, 0, 0}, {181s, -1, -1}};
    for (const auto& [since, minutes, seconds] : cases) {
        EXPECT_EQ(alarm->minutesFromNow(eight() + since).minutes, minutes) << since.count();
        EXPECT_EQ(alarm->minutesFromNow(eight() + since).seconds, seconds) << since.count();
    }
    EXPECT_EQ(alarm->minute(eight()), 2);
}

TEST(AlarmTest, everyNewStartForgetsTheSnoozesWhichAddUp) {
    const AlarmPtr alarm = AlarmOf{.kind = Alarm::Dated, .time = "2026-11-21 07:00"}.alarm();
    alarm->snooze(9);
    alarm->snooze(9);
    EXPECT_EQ(alarm->time(eight()), at("2026-11-21 07:18"));
    alarm->setRunTime({});
    EXPECT_EQ(alarm->time(eight()), at("2026-11-21 07:00"));
}

TEST(AlarmTest, copyTakesTheDueTimeAndLeavesWhatBelongsToRunning) {
    Reports reports;
    const AlarmPtr alarm = AlarmOf{.kind = Alarm::Dated,
                                   .time = "2026-11-21 07:00:45",
                                   .runTime = "2026-11-20 07:00",
                                   .snoozed = 10}
                               .alarm();
    alarm->setIsActive(true);
    alarm->setIsTriggered(true);
    alarm->setDelegate(&reports);
    const AlarmPtr copy = alarm->copy(eight());
    EXPECT_EQ(copy->storedTime(), at("2026-11-21 07:10"));
    EXPECT_FALSE(copy->storedRunTime().isValid() || copy->snoozedMinutes() != 0 ||
                 copy->isActive() || copy->isTriggered() || copy->delegate());
}

TEST(AlarmTest, comparesItsStoredTimeWithTheDueTimeOfTheOther) {
    const AlarmPtr seven = AlarmOf{.kind = Alarm::Dated, .time = "2026-11-21 07:00:45"}.alarm();
    const AlarmPtr relative = AlarmOf{}.alarm();
    EXPECT_EQ(seven->compare(*seven, eight()), std::weak_ordering::greater)
        << "seconds against none";
    EXPECT_EQ(seven->compare(*relative, eight()), std::weak_ordering::less);
    EXPECT_EQ(relative->compare(*seven, eight()), std::weak_ordering::equivalent) << "none stored";
}

TEST(AlarmTest, describesItselfWithAndWithoutATitle) {
    EXPECT_EQ(Alarm::create()->description(), QStringLiteral("Alarm at (null) (no reminder)"));
    EXPECT_EQ((AlarmOf{.title = "Tea %1", .time = "2026-11-21 07:00"}.alarm()->description()),
              QStringLiteral("Alarm at 2026-11-21T07:00:00+01:00 (\"Tea %1\")"));
}

} // namespace

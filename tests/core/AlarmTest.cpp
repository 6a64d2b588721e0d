// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Alarm.h"

#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"
#include "tests/support/ZoneScope.h"

using namespace dorvane::testing;

namespace {

constexpr auto dated = Alarm::Dated;
constexpr auto weekly = Alarm::Weekly;

Instant eight() {
    return instantOf(at("11-21 08:00"));
}

TEST(AlarmTest, dueTimeOfEachKind) {
    const struct {
        const char* due;
        AlarmOf alarm;
    } cases[] = {
        {"2027-01-01 00:04+01", {.kind = dated, .time = "12-31 23:55:45", .snoozed = 9}},
        {"11-24 07:00:45+01", {.kind = weekly, .time = "11-24 07:00:45"}},
        {"11-24 07:00:45+01", {.kind = 3, .minutes = 5, .time = "11-24 07:00:45"}},
        {"11-21 10:00+01", {.hours = 2}},                           // counts from now
        {"11-21 08:10+01", {.minutes = 10, .time = "07-01 00:00"}}, // its stored time is not read
        {"none", {.kind = dated}},
        {"2226-11-24 21:00+01", {.hours = 9'999'999'999, .runTime = "11-24 09:00"}}, // bounded
        // Minutes are minutes that pass.
        {"03-29 04:00+02", {.minutes = 90, .runTime = "03-29 01:30"}},
        {"10-25 02:15+01", {.minutes = 90, .runTime = "10-25 01:45"}},
        {"03-29 03:05+02", {.kind = dated, .time = "03-29 01:55", .snoozed = 10}},
        // Hours are hours of the clock face; a snooze is one of minutes.
        {"03-29 08:00+02", {.hours = 10, .runTime = "03-28 22:00"}},
        {"10-25 08:00+01", {.hours = 10, .runTime = "10-24 22:00"}},
        {"10-25 02:30+01", {.hours = 4, .runTime = "10-24 22:00", .snoozed = 90}},
    };
    for (std::size_t row = 0; row < std::size(cases); ++row)
        EXPECT_EQ(brief(cases[row].alarm.alarm()->time(eight())), cases[row].due) << row;
}

// A rhythm of hours through the nights on which clocks are set: on and on, never at once.
TEST(AlarmTest, hoursKeepTheirTimeOfDay) {
    const struct {
        const char* zone;
        const char* start;
        qint64 hours;
        const char* dues[2];
    } cases[] = {
        {"Europe/Berlin", "2026-03-28T06:00Z", 24, {"03-29 07:00+02", "03-30 07:00+02"}},
        {"Europe/Berlin", "2026-10-24T05:00Z", 24, {"10-25 07:00+01", "10-26 07:00+01"}},
        {"Europe/Berlin", "2026-03-29T00:30Z", 1, {"03-29 03:30+02", "03-29 04:30+02"}},
        {"Europe/Berlin", "2026-10-24T23:30Z", 1, {"10-25 02:30+02", "10-25 03:30+01"}},
        {"Europe/Berlin", "2026-10-25T01:30Z", 1, {"10-25 03:30+01", "10-25 04:30+01"}},
        {"Australia/Lord_Howe", "2026-04-04T14:45Z", 1, {"04-05 02:45+10", "04-05 03:45+10"}},
        // Where two hours come twice, from the second 01:30.
        {"Antarctica/Troll", "2026-10-25T01:30Z", 1, {"10-25 02:30+00", "10-25 03:30+00"}},
    };
    for (const auto& c : cases) {
        const ZoneScope zone(c.zone);
        const AlarmPtr alarm = AlarmOf{.hours = c.hours}.alarm();
        alarm->setRunTime(at(c.start));
        for (const char* expected : c.dues) {
            EXPECT_EQ(brief(alarm->time(eight())), expected) << c.zone << " " << c.start;
            alarm->setRunTime(alarm->time(eight()));
        }
    }
}

} // namespace

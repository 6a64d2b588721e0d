// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LocalTime.h"

#include "core/Weekday.h"
#include "tests/support/Testing.h"
#include "tests/support/ZoneScope.h"

using namespace dorvane::testing;

namespace {

TEST(LocalTimeTest, missingHourMovesForwardAndDoubledHourIsTheFirst) {
    struct Case {
        const char* zone;
        QDate date;
        QTime time;
        const char* expected;
    };
    const Case cases[] = {
        {"Europe/Berlin", {2026, 3, 29}, {1, 59}, "2026-03-29T01:59:00+01:00"},
        {"Europe/Berlin", {2026, 3, 29}, {2, 30}, "2026-03-29T03:30:00+02:00"},
        {"Europe/Berlin", {2026, 3, 29}, {3, 0}, "2026-03-29T03:00:00+02:00"},
        {"Europe/Berlin", {2026, 10, 25}, {2, 30}, "2026-10-25T02:30:00+02:00"},
        {"Europe/Berlin", {2026, 10, 25}, {3, 0}, "2026-10-25T03:00:00+01:00"},
        {"America/New_York", {2026, 3, 8}, {2, 30}, "2026-03-08T03:30:00-04:00"},
        {"America/New_York", {2026, 11, 1}, {1, 30}, "2026-11-01T01:30:00-04:00"},
        {"Australia/Lord_Howe", {2026, 10, 4}, {2, 15}, "2026-10-04T02:45:00+11:00"},
        {"Australia/Lord_Howe", {2026, 4, 5}, {1, 45}, "2026-04-05T01:45:00+11:00"},
        {"America/Santiago", {2026, 9, 6}, {0, 30}, "2026-09-06T01:30:00-03:00"},
        {"America/Santiago", {2026, 4, 4}, {23, 30}, "2026-04-04T23:30:00-03:00"},
        {"Africa/Casablanca", {2026, 3, 22}, {2, 30}, "2026-03-22T03:30:00+01:00"},
        {"Pacific/Apia", {2011, 12, 30}, {8, 0}, "2011-12-31T08:00:00+14:00"},
        {"Pacific/Kiritimati", {2026, 1, 1}, {0, 0}, "2026-01-01T00:00:00+14:00"},
        {"Etc/GMT+12", {2026, 12, 31}, {23, 59}, "2026-12-31T23:59:00-12:00"},
    };
    for (const Case& c : cases) {
        const ZoneScope zone(c.zone);
        EXPECT_EQ(text(localMoment(c.date, c.time)), c.expected) << c.zone;
    }
}

TEST(LocalTimeTest, addingDaysKeepsTheClockTimeOverMonthsYearsAndOddNights) {
    struct Case {
        const char* from;
        int days;
        const char* expected;
    };
    const Case cases[] = {
        {"2026-03-28 07:00", 1, "2026-03-29T07:00:00+02:00"},
        {"2026-03-28 02:30", 1, "2026-03-29T03:30:00+02:00"},
        {"2026-10-24 07:00", 1, "2026-10-25T07:00:00+01:00"},
        {"2026-10-24 02:30", 1, "2026-10-25T02:30:00+02:00"},
        {"2026-12-31 23:59", 1, "2027-01-01T23:59:00+01:00"},
        {"2028-02-28 06:45", 1, "2028-02-29T06:45:00+01:00"},
        {"2026-02-28 06:45", 7, "2026-03-07T06:45:00+01:00"},
        {"2199-12-31 12:00", 1, "2200-01-01T12:00:00+01:00"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(addingDays(at(c.from), c.days)), c.expected) << c.from;
}

// English for everybody, by the clock of where they are, also where no English is spoken.
TEST(DateHelpersTest, datesAreEnglishByTheClockOfTheTerritory) {
    const QDateTime evening = at("11-24 19:05");
    const struct {
        const char* territory;
        int daysAhead;
        const char* expected;
    } cases[] = {
        {"de_DE", 0, "Tue, 19:05"},
        {"fr_FR", 0, "Tue, 19:05"},
        {"ko_KR", 0, "Tue, 7:05 PM"},
        {"en_US", 0, "Tue, 7:05 PM"},
        {"de_DE", 6, "Tue, 19:05"},
        {"en_US", 7, "Tue, 24 Nov, 7:05 PM"},
        {"de_DE", 365, "Tue, 24 Nov 2026, 19:05"},
    };
    for (const auto& c : cases) {
        const QLocale territory(QString::fromLatin1(c.territory));
        const QDateTime now = evening.addDays(-c.daysAhead);
        EXPECT_EQ(dayTimeString(evening, now, territory), QLatin1String(c.expected)) << c.territory;
    }
    for (const Weekday day : everyWeekday) {
        const QDate date = QDate(2026, 11, 23).addDays(int(day) - int(Weekday::Monday));
        EXPECT_EQ(weekdayNamed(weekdayName(date)), day) << int(day);
        EXPECT_EQ(weekdayNamed(weekdayName(date, QLocale::German)), std::nullopt) << int(day);
    }
}

TEST(DateHelpersTest, roundsToFiveMinutesByTheMinuteAlone) {
    const std::pair<const char*, const char*> cases[] = {
        {"2026-11-24 09:58:30", "2026-11-24T10:00:00+01:00"},
        {"2026-11-24 09:52:10", "2026-11-24T09:50:00+01:00"},
        {"2026-11-24 12:03:40", "2026-11-24T12:05:00+01:00"},
        {"2026-11-24 12:02:59", "2026-11-24T12:00:00+01:00"},
        {"2026-12-31 23:58:00", "2027-01-01T00:00:00+01:00"},
    };
    for (const auto& [from, expected] : cases)
        EXPECT_EQ(text(calendarDateRoundedTo5(at(from))), expected) << from;
    EXPECT_TRUE(isSameDay(at("2024-03-05 10:00"), at("2024-03-05 23:59")));
    EXPECT_FALSE(isSameDay(at("2024-03-05 23:59"), at("2024-03-06 00:00")));
}

} // namespace

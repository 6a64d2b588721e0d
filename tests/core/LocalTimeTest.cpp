// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LocalTime.h"

#include "core/Weekday.h"
#include "tests/support/Testing.h"
#include "tests/support/ZoneScope.h"

using namespace dorvane::testing;

namespace {

TEST(LocalTimeTest, missingHourMovesForwardAndDoubledHourIsTheFirst) {
    const struct {
        const char* zone;
        QDate date;
        QTime time;
        const char* expected;
    } cases[] = {
        {"Europe/Berlin", {2026, 3, 29}, {2, 30}, "03-29 03:30+02"},
        {"Europe/Berlin", {2026, 3, 29}, {3, 0}, "03-29 03:00+02"},
        {"Europe/Berlin", {2026, 10, 25}, {2, 30}, "10-25 02:30+02"},
        {"America/New_York", {2026, 11, 1}, {1, 30}, "11-01 01:30-04"},
        {"Australia/Lord_Howe", {2026, 10, 4}, {2, 15}, "10-04 02:45+11"},
        {"Australia/Lord_Howe", {2026, 4, 5}, {1, 45}, "04-05 01:45+11"},
        {"America/Santiago", {2026, 9, 6}, {0, 30}, "09-06 01:30-03"}, // at midnight
        {"America/Santiago", {2026, 4, 4}, {23, 30}, "04-04 23:30-03"},
        {"Pacific/Apia", {2011, 12, 30}, {8, 0}, "2011-12-31 08:00+14"}, // no such day
    };
    for (const auto& c : cases) {
        const ZoneScope zone(c.zone);
        EXPECT_EQ(brief(localMoment(c.date, c.time)), c.expected) << c.zone;
    }
}

// English for everybody, by the clock of where they are, also where no English is spoken.
TEST(DateHelpersTest, datesAreEnglishByTheClockOfTheTerritory) {
    const QDateTime evening = at("11-24 19:05");
    const struct {
        const char* territory;
        int daysAhead;
        const char* expected;
    } cases[] = {
        {"de_DE", 0, "Tue, 19:05"},      {"ko_KR", 0, "Tue, 7:05 PM"},
        {"en_US", 0, "Tue, 7:05 PM"},    {"de_DE", 6, "Tue, 19:05"},
        {"en_US", 7, "24 Nov, 7:05 PM"}, {"de_DE", 365, "24 Nov 2026, 19:05"},
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

} // namespace

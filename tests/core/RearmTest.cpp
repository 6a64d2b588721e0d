// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/NextOccurrence.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/ZoneScope.h"

#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;

namespace {

using Outcome = RearmDecision::Outcome;
constexpr auto Mon = Weekday::Monday;
constexpr auto Wed = Weekday::Wednesday;
constexpr auto Thu = Weekday::Thursday;
constexpr auto Fri = Weekday::Friday;
constexpr auto Sun = Weekday::Sunday;

TEST(NextOccurrenceTest, firstDateOfAWeekdayAlarm) {
    const struct {
        const char* name;
        WeekdaySet ticked;
        const char* now;
        const char* time;
        const char* expected;
        const char* todaysName = nullptr; // null: the one of now
    } cases[] = {
        {"today off", {Fri}, "2026-11-25 08:00", "2026-11-25 07:30", "2026-11-27T07:30:00+01:00"},
        {"today missed",
         {Wed, Fri},
         "2026-11-25 08:00",
         "2026-11-25 07:30",
         "2026-11-27T07:30:00+01:00"},
        {"today ahead",
         {Wed, Fri},
         "2026-11-25 08:00",
         "2026-11-25 09:00",
         "2026-11-25T09:00:00+01:00"},
        {"right now", {Wed}, "2026-11-25 09:00", "2026-11-25 09:00", "2026-11-25T09:00:00+01:00"},
        {"only today, missed",
         {Wed},
         "2026-11-25 09:01",
         "2026-11-25 09:00",
         "2026-12-02T09:00:00+01:00"},
        {"Sunday wraps to Monday",
         {Mon, Sun},
         "2026-11-29 09:01",
         "2026-11-29 09:00",
         "2026-11-30T09:00:00+01:00"},
        {"no day", {}, "2026-11-25 09:01", "2026-11-25 09:00", "2026-11-25T09:00:00+01:00"},
        {"over a year's end",
         {Fri},
         "2026-12-30 09:00",
         "2026-12-30 08:00",
         "2027-01-01T08:00:00+01:00"},
        {"missing hour",
         {Sun},
         "2026-03-27 09:00",
         "2026-03-27 02:30",
         "2026-03-29T03:30:00+02:00"},
        {"doubled hour",
         {Sun},
         "2026-10-23 09:00",
         "2026-10-23 02:30",
         "2026-10-25T02:30:00+02:00"},
        {"a name that is not English",
         {Fri},
         "2026-11-25 08:00",
         "2026-11-25 07:30",
         "2026-11-25T07:30:00+01:00",
         "Mittwoch"},
    };
    for (const auto& c : cases) {
        const QDateTime now = at(c.now);
        const QString name = c.todaysName ? QLatin1String(c.todaysName) : weekdayName(now.date());
        EXPECT_EQ(text(firstWeekdayDate(c.ticked, at(c.time), now, name)), c.expected) << c.name;
    }
}

using Decide = RearmDecision (*)(const Alarm&, const QDateTime&, const QString&);

struct Rang {
    const char* name;
    AlarmOf alarm;
    const char* now;
    Outcome outcome;
    const char* due; // after the decision was carried out
    WeekdaySet left = {};
    const char* today = nullptr; // null: the English name
};

void check(const std::vector<Rang>& cases, Decide decide) {
    for (const Rang& c : cases) {
        const QDateTime now = at(c.now);
        const AlarmPtr alarm = c.alarm.alarm();
        const QString today = c.today ? QLatin1String(c.today) : weekdayName(now.date());
        const RearmDecision decision = decide(*alarm, now, today);
        applyRearm(decision, *alarm);
        EXPECT_EQ(decision.outcome, c.outcome) << c.name;
        EXPECT_EQ(text(alarm->time(instantOf(now))), c.due) << c.name;
        EXPECT_EQ(alarm->weekdays(), c.left) << c.name;
    }
}

AlarmOf daily(const char* time, int snoozed = 0) {
    return {.kind = Alarm::Dated, .time = time, .snoozed = snoozed, .everyDay = true};
}
AlarmOf relative(bool repeats, int snoozed = 0) {
    return {.minutes = 15, .runTime = "2026-11-25 09:45", .snoozed = snoozed, .repeats = repeats};
}
AlarmOf weekly(WeekdaySet days, bool forever, const char* time = "2026-11-23 07:00") {
    return {.kind = Alarm::Weekly, .time = time, .runTime = time, .days = days, .forever = forever};
}

TEST(RearmTest, afterRinging) {
    AlarmOf snoozed = weekly({Mon, Wed}, true, "2026-11-23 07:00:20");
    snoozed.snoozed = 9;
    check(
        {
            {"dated",
             {.kind = Alarm::Dated, .time = "2026-11-25 07:00"},
             "2026-11-25 07:03",
             Outcome::Remove,
             "2026-11-25T07:00:00+01:00"},
            {"every day, snoozed", daily("2026-11-25 06:45:30", 10), "2026-11-25 06:58",
             Outcome::NextDay, "2026-11-26T06:45:00+01:00"},
            {"every day into the missing hour", daily("2026-03-28 02:30"), "2026-03-28 02:30",
             Outcome::NextDay, "2026-03-29T03:30:00+02:00"},
            {"every day without a time", daily(nullptr), "2026-11-25 07:03", Outcome::Remove,
             "none"},
            {"relative", relative(false), "2026-11-25 10:03", Outcome::Remove,
             "2026-11-25T10:00:00+01:00"},
            {"repeating, cleared late", relative(true), "2026-11-25 10:03", Outcome::NextPeriod,
             "2026-11-25T10:15:00+01:00"},
            {"repeating, snoozed", relative(true, 5), "2026-11-25 10:06", Outcome::NextPeriod,
             "2026-11-25T10:15:00+01:00"},
            {"Monday once",
             weekly({Mon}, false),
             "2026-11-23 07:01",
             Outcome::Remove,
             "2026-11-23T07:00:00+01:00",
             {Mon}},
            {"Monday for ever",
             weekly({Mon}, true),
             "2026-11-23 07:01",
             Outcome::NextWeekday,
             "2026-11-30T07:00:00+01:00",
             {Mon}},
            {"two days for ever, snoozed",
             snoozed,
             "2026-11-23 07:10",
             Outcome::NextWeekday,
             "2026-11-25T07:00:00+01:00",
             {Mon, Wed}},
            {"two days once",
             weekly({Mon, Wed}, false),
             "2026-11-23 07:01",
             Outcome::NextWeekday,
             "2026-11-25T07:00:00+01:00",
             {Wed}},
            {"Sunday to Monday",
             weekly({Mon, Sun}, true, "2026-11-29 07:00"),
             "2026-11-29 07:01",
             Outcome::NextWeekday,
             "2026-11-30T07:00:00+01:00",
             {Mon, Sun}},
            {"no English day name",
             weekly({Mon}, true),
             "2026-11-23 07:01",
             Outcome::Remove,
             "2026-11-23T07:00:00+01:00",
             {Mon},
             "Montag"},
        },
        rearmAfterRinging);
}

TEST(RearmTest, atRestore) {
    const AlarmOf dated{.kind = Alarm::Dated, .time = "2026-11-25 07:00"};
    check(
        {
            {"still ahead", dated, "2026-11-25 06:59", Outcome::Unchanged,
             "2026-11-25T07:00:00+01:00"},
            {"due right now", dated, "2026-11-25 07:00", Outcome::Unchanged,
             "2026-11-25T07:00:00+01:00"},
            {"past, every day", daily("2026-11-24 07:00"), "2026-11-25 06:59", Outcome::Remove,
             "2026-11-24T07:00:00+01:00"},
            {"past, repeating", relative(true), "2026-11-25 10:01", Outcome::Remove,
             "2026-11-25T10:00:00+01:00"},
            {"past weekday",
             weekly({Mon, Thu}, false),
             "2026-11-24 09:00",
             Outcome::NextWeekday,
             "2026-11-26T07:00:00+01:00",
             {Mon, Thu}},
            {"past weekday, no day ticked", weekly({}, false), "2026-11-24 09:00", Outcome::Remove,
             "2026-11-23T07:00:00+01:00"},
            {"today was its last day", weekly({Mon}, false), "2026-11-23 09:00", Outcome::NoDayLeft,
             "2026-11-23T07:00:00+01:00"},
            {"no English day name",
             weekly({Mon}, false),
             "2026-11-24 09:00",
             Outcome::Unchanged,
             "2026-11-23T07:00:00+01:00",
             {Mon},
             "mardi"},
        },
        rearmAtRestore);
}

TEST(RearmTest, dailyAlarmCrossesBothOddNightsOfFourZonesOnceADay) {
    // Three days around each change, at a time inside the missing or the doubled hour.
    const struct {
        const char* zone;
        QDate first;
        QTime time;
    } cases[] = {
        {"Europe/Berlin", {2026, 3, 28}, {2, 30}},
        {"Europe/Berlin", {2026, 10, 24}, {2, 30}},
        {"America/New_York", {2026, 3, 7}, {2, 30}},
        {"America/New_York", {2026, 10, 31}, {1, 30}},
        {"Australia/Lord_Howe", {2026, 10, 3}, {2, 15}},
        {"Australia/Lord_Howe", {2026, 4, 4}, {1, 45}},
        {"America/Santiago", {2026, 9, 5}, {0, 30}},
        {"America/Santiago", {2026, 4, 4}, {23, 30}},
    };
    for (const auto& c : cases) {
        const ZoneScope zone(c.zone);
        const AlarmPtr alarm = daily(nullptr).alarm();
        alarm->setTime(QDateTime(c.first, c.time));
        for (int day = 1; day <= 3; ++day) {
            const QDateTime before = alarm->time({});
            applyRearm(rearmAfterRinging(*alarm, before, QString()), *alarm);
            EXPECT_EQ(alarm->time({}).date(), c.first.addDays(day)) << c.zone << day;
            EXPECT_LE(qAbs(before.secsTo(alarm->time({})) - 24 * 3600), 2 * 3600) << c.zone << day;
        }
    }
}

} // namespace

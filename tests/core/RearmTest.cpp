// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/NextOccurrence.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"
#include "tests/support/ZoneScope.h"

using namespace dorvane::testing;

namespace {

constexpr auto Mon = Weekday::Monday;
constexpr auto Tue = Weekday::Tuesday;
constexpr auto Wed = Weekday::Wednesday;
constexpr auto Thu = Weekday::Thursday;
constexpr auto Fri = Weekday::Friday;
constexpr auto Sat = Weekday::Saturday;
constexpr auto Sun = Weekday::Sunday;

TEST(NextOccurrenceTest, firstDateOfAWeekdayAlarm) {
    const struct {
        const char* name;
        WeekdaySet ticked;
        const char* now;
        const char* time;
        const char* expected;
    } cases[] = {
        {"today off", {Fri}, "11-25 08:00", "07:30", "11-27 07:30+01"},
        {"today missed", {Wed, Fri}, "11-25 08:00", "07:30", "11-27 07:30+01"},
        {"today ahead", {Wed, Fri}, "11-25 08:00", "09:00", "11-25 09:00+01"},
        {"right now", {Wed}, "11-25 09:00", "09:00", "11-25 09:00+01"},
        {"only today, missed", {Wed}, "11-25 09:01", "09:00", "12-02 09:00+01"},
        {"Sunday to Monday", {Mon, Sun}, "11-29 09:01", "09:00", "11-30 09:00+01"},
        {"no day", {}, "11-25 09:01", "09:00", "11-25 09:00+01"},
        {"over a year's end", {Fri}, "12-30 09:00", "08:00", "2027-01-01 08:00+01"},
        {"missing hour", {Sun}, "03-27 09:00", "02:30", "03-29 03:30+02"},
        {"doubled hour", {Sun}, "10-23 09:00", "02:30", "10-25 02:30+02"},
        {"after the missing one", {Mon}, "03-29 09:00", "02:30", "03-30 02:30+02"},
        {"between two of a time", {Sun}, "2026-10-25T01:10:00Z", "02:30", "10-25 02:30+01"},
    };
    for (const auto& c : cases) {
        const QDateTime now = at(c.now);
        const QString name = weekdayName(now.date());
        EXPECT_EQ(
            brief(firstWeekdayDate(c.ticked, QTime::fromString(QLatin1String(c.time)), now, name)),
            c.expected)
            << c.name;
    }
    EXPECT_EQ(firstWeekdayDate({Fri}, QTime(7, 30), at("11-25 08:00"), u"Mittwoch"_qs),
              at("11-25 07:30"))
        << "a day name that is not English";
}

struct Rang {
    AlarmOf alarm;
    const char* now;
    RearmDecision::Outcome outcome;
    const char* due; // after the decision was carried out
    WeekdaySet left = {};
    const char* missed = nullptr; // the last that passed in silence
    const char* today = nullptr;  // null: the English name
};

void check(const std::vector<Rang>& cases, decltype(rearmAfterRinging)* decide) {
    for (std::size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE(row);
        const Rang& c = cases[row];
        const QDateTime now = at(c.now);
        const AlarmPtr alarm = c.alarm.alarm();
        const QString today = c.today ? QLatin1String(c.today) : weekdayName(now.date());
        const RearmDecision decision = decide(*alarm, now, today);
        applyRearm(decision, *alarm);
        EXPECT_EQ(decision.outcome, c.outcome);
        EXPECT_EQ(brief(alarm->time(instantOf(now))), c.due);
        EXPECT_EQ(alarm->weekdays(), c.left);
        EXPECT_EQ(decision.missed, c.missed ? at(c.missed) : QDateTime());
    }
}

AlarmOf dated(const char* time) {
    return {.kind = Alarm::Dated, .time = time};
}
AlarmOf daily(const char* time, int snoozed = 0) {
    return {.kind = Alarm::Dated, .time = time, .snoozed = snoozed, .everyDay = true};
}
AlarmOf timer(bool repeats, int snoozed = 0) { // due on 11-25 10:00
    return {.minutes = 15, .runTime = "11-25 09:45", .snoozed = snoozed, .repeats = repeats};
}
AlarmOf hourly(qint64 hours, const char* start) {
    return {.hours = hours, .runTime = start, .repeats = true};
}
AlarmOf on(WeekdaySet days, bool forever, const char* time = "11-23 07:00", int snoozed = 0) {
    return {.kind = Alarm::Weekly,
            .time = time,
            .runTime = time,
            .snoozed = snoozed,
            .days = days,
            .forever = forever};
}

AlarmOf once(WeekdaySet days, const char* time = "11-23 07:00", int snoozed = 0) {
    return on(days, false, time, snoozed);
}

TEST(RearmTest, afterRinging) {
    using enum RearmDecision::Outcome;
    const WeekdaySet both{Mon, Wed}, over{Mon, Sun};
    const std::vector<Rang> cases = {
        {dated("11-25 07:00"), "11-25 07:03", Remove, "11-25 07:00+01"},
        {daily("11-25 06:45:30", 10), "11-25 06:58", NextDay, "11-26 06:45+01"},
        {daily("11-26 00:00"), "11-25 23:59:59", NextDay, "11-27 00:00+01"}, // a second early
        {daily("11-22 08:30"), "11-25 11:30", NextDay, "11-26 08:30+01", {}, "11-25 08:30"},
        {daily("11-22 08:30", 9), "11-25 08:29", NextDay, "11-25 08:30+01", {}, "11-24 08:30"},
        {daily("03-28 02:30"), "03-28 02:30", NextDay, "03-29 03:30+02"}, // the missing hour
        {daily("03-28 02:30"), "03-30 01:00", NextDay, "03-30 02:30+02", {}, "03-29 03:30"},
        {daily("10-24 02:30"), "10-24 02:30", NextDay, "10-25 02:30+02"}, // the doubled one
        {daily(nullptr), "11-25 07:03", Remove, "none"},
        {{.kind = 3, .minutes = 5, .time = "11-25 07:00", .repeats = true}, // of a damaged record
         "11-25 07:03",
         Remove,
         "11-25 07:00+01"},
        {timer(false), "11-25 10:03", Remove, "11-25 10:00+01"},
        {timer(true), "11-25 10:03", NextPeriod, "11-25 10:15+01"}, // cleared late
        {timer(true, 5), "11-25 10:06", NextPeriod, "11-25 10:15+01"},
        {timer(true), "11-25 18:15", NextPeriod, "11-25 18:30+01", {}, "11-25 18:15"},
        {timer(true),
         "2027-11-25 10:00",
         NextPeriod,
         "2027-11-25 10:15+01",
         {},
         "2027-11-25 10:00"},
        {hourly(24, "03-27 02:30"), "03-31 09:00", NextPeriod, "04-01 02:30+02", {}, "03-31 02:30"},
        {hourly(1, "10-24 23:30"), "10-25 02:10", NextPeriod, "10-25 02:30+02", {}, "10-25 01:30"},
        {{.repeats = true}, "11-25 10:00", Remove, "11-25 10:00+01"}, // in no time, again and again
        {once({Mon}), "11-23 07:01", Remove, "11-23 07:00+01", {Mon}},
        {on({Mon}, true), "11-23 07:01", NextWeekday, "11-30 07:00+01", {Mon}},
        {on(both, true, "11-23 07:00:20", 9), "11-23 07:10", NextWeekday, "11-25 07:00+01", both},
        {once(both), "11-23 07:01", NextWeekday, "11-25 07:00+01", {Wed}},
        {on(over, true, "11-29 07:00"), "11-29 07:01", NextWeekday, "11-30 07:00+01", over},
        // Answered on the next day, before which it was due; and weeks later.
        {once({Mon, Tue, Wed}, "11-23 23:58", 9),
         "11-24 00:12",
         NextWeekday,
         "11-24 23:58+01",
         {Tue, Wed}},
        {on({Mon, Tue}, true),
         "12-08 06:00",
         NextWeekday,
         "12-08 07:00+01",
         {Mon, Tue},
         "12-07 07:00"},
        {on({Mon}, true), "12-07 06:00", NextWeekday, "12-07 07:00+01", {Mon}, "11-30 07:00"},
        {once({Mon, Tue, Thu}), "11-24 09:00", NextWeekday, "11-26 07:00+01", {Thu}, "11-24 07:00"},
        {once({Mon, Tue}), "11-24 09:00", Remove, "11-23 07:00+01", {Mon, Tue}, "11-24 07:00"},
        {on({Mon}, true), "11-23 07:01", Remove, "11-23 07:00+01", {Mon}, nullptr, "Montag"},
    };
    check(cases, rearmAfterRinging);
}

// Half past eleven is skipped on the 28th, a Saturday, where it goes from eleven to midnight.
TEST(RearmTest, aNightThatSkipsTheEndOfADaySkipsNoAlarm) {
    const ZoneScope zone("America/Nuuk");
    for (const AlarmOf& values : {daily("03-27 23:30"), on({Fri, Sat, Sun}, false, "03-27 23:30")})
        for (const char* answered : {"", "03-29 00:10"}) {
            const AlarmPtr alarm = values.alarm();
            for (const char* due : {"03-27 23:30-02", "03-29 00:30-01", "03-29 23:30-01"}) {
                const QDateTime time = alarm->time({});
                EXPECT_EQ(brief(time), due) << answered;
                const QDateTime now = *answered ? std::max(time, at(answered)) : time;
                applyRearm(rearmAfterRinging(*alarm, now, weekdayName(now.date())), *alarm);
            }
        }
}

TEST(RearmTest, atStart) {
    using enum RearmDecision::Outcome;
    const WeekdaySet both{Mon, Wed};
    const std::vector<Rang> cases = {
        {dated("11-25 07:00"), "11-25 07:01", Remove, "11-25 07:00+01"},
        {dated("11-25 07:00"), "11-25 07:00", Unchanged, "11-25 07:00+01"},
        {daily("11-22 08:30"), "11-25 08:30", NextDay, "11-26 08:30+01", {}, "11-25 08:30"},
        {daily("11-22 08:30"), "11-25 08:00", NextDay, "11-25 08:30+01", {}, "11-24 08:30"},
        {timer(false), "11-25 12:00", Unchanged, "11-25 10:00+01"}, // the clock has it count anew
        {once({Mon}), "11-23 07:00", Unchanged, "11-23 07:00+01", {Mon}},
        {once({Mon}), "11-23 09:00", NextWeekday, "11-30 07:00+01", {Mon}},
        {once(both), "11-25 06:59", NextWeekday, "11-25 07:00+01", both}, // today's is ahead
        {once(both), "11-25 07:01", NextWeekday, "11-30 07:00+01", both},
        {once({}), "11-24 09:00", Remove, "11-23 07:00+01"},
        {once({Mon}), "11-24 09:00", Unchanged, "11-23 07:00+01", {Mon}, nullptr, "mardi"},
    };
    check(cases, rearmAtStart);
}

TEST(RearmTest, snoozeCountsFromTheDueTimeUnlessThatWouldHavePassed) {
    const struct {
        int snoozeTime, snoozed;
        const char* now; // due on 11-25 07:00, and put off from there
        const char* due;
    } cases[] = {
        {9, 0, "11-25 06:59:59", "11-25 07:09+01"}, {9, 9, "11-25 07:09:30", "11-25 07:18+01"},
        {9, 0, "11-25 07:08", "11-25 07:09+01"},    {9, 0, "11-25 07:09", "11-25 07:18+01"},
        {9, 9, "11-26 15:00:01", "11-26 15:10+01"}, {0, 0, "11-25 06:59:59", "11-25 07:01+01"},
        {0, 0, "11-25 07:01:30", "11-25 07:03+01"}, {-5, 0, "11-25 06:59:59", "11-25 07:01+01"},
    };
    for (const auto& c : cases) {
        const AlarmPtr alarm =
            AlarmOf{.kind = Alarm::Dated, .time = "11-25 07:00", .snoozed = c.snoozed}.alarm();
        const Instant now = instantOf(at(c.now));
        alarm->snooze(qint32(snoozeMinutes(*alarm, c.snoozeTime, now)));
        EXPECT_EQ(brief(alarm->time(now)), c.due) << c.now << ", " << c.snoozeTime;
    }
}

} // namespace

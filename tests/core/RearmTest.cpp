// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/NextOccurrence.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

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
    } cases[] = {
        {"today off", {Fri}, "11-25 08:00", "11-25 07:30", "11-27 07:30+01"},
        {"today missed", {Wed, Fri}, "11-25 08:00", "11-25 07:30", "11-27 07:30+01"},
        {"today ahead", {Wed, Fri}, "11-25 08:00", "11-25 09:00", "11-25 09:00+01"},
        {"right now", {Wed}, "11-25 09:00", "11-25 09:00", "11-25 09:00+01"},
        {"only today, missed", {Wed}, "11-25 09:01", "11-25 09:00", "12-02 09:00+01"},
        {"Sunday to Monday", {Mon, Sun}, "11-29 09:01", "11-29 09:00", "11-30 09:00+01"},
        {"no day", {}, "11-25 09:01", "11-25 09:00", "11-25 09:00+01"},
        {"over a year's end", {Fri}, "12-30 09:00", "12-30 08:00", "2027-01-01 08:00+01"},
        {"missing hour", {Sun}, "03-27 09:00", "03-27 02:30", "03-29 03:30+02"},
        {"doubled hour", {Sun}, "10-23 09:00", "10-23 02:30", "10-25 02:30+02"},
    };
    for (const auto& c : cases) {
        const QDateTime now = at(c.now);
        const QString name = weekdayName(now.date());
        EXPECT_EQ(brief(firstWeekdayDate(c.ticked, at(c.time), now, name)), c.expected) << c.name;
    }
    EXPECT_EQ(firstWeekdayDate({Fri}, at("11-25 07:30"), at("11-25 08:00"), u"Mittwoch"_qs),
              at("11-25 07:30"))
        << "a day name that is not English";
}

struct Rang {
    AlarmOf alarm;
    const char* now;
    RearmDecision::Outcome outcome;
    const char* due; // after the decision was carried out
    WeekdaySet left = {};
    const char* today = nullptr; // null: the English name
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
AlarmOf on(WeekdaySet days, bool forever, const char* time = "11-23 07:00", int snoozed = 0) {
    return {.kind = Alarm::Weekly,
            .time = time,
            .runTime = time,
            .snoozed = snoozed,
            .days = days,
            .forever = forever};
}

AlarmOf once(WeekdaySet days) {
    return on(days, false);
}

TEST(RearmTest, afterRinging) {
    using enum RearmDecision::Outcome;
    const WeekdaySet both{Mon, Wed}, over{Mon, Sun};
    const std::vector<Rang> cases = {
        {dated("11-25 07:00"), "11-25 07:03", Remove, "11-25 07:00+01"},
        {daily("11-25 06:45:30", 10), "11-25 06:58", NextDay, "11-26 06:45+01"},
        {daily("03-28 02:30"), "03-28 02:30", NextDay, "03-29 03:30+02"}, // the missing hour
        {daily("10-24 02:30"), "10-24 02:30", NextDay, "10-25 02:30+02"}, // the doubled one
        {daily(nullptr), "11-25 07:03", Remove, "none"},
        {timer(false), "11-25 10:03", Remove, "11-25 10:00+01"},
        {timer(true), "11-25 10:03", NextPeriod, "11-25 10:15+01"}, // cleared late
        {timer(true, 5), "11-25 10:06", NextPeriod, "11-25 10:15+01"},
        {once({Mon}), "11-23 07:01", Remove, "11-23 07:00+01", {Mon}},
        {on({Mon}, true), "11-23 07:01", NextWeekday, "11-30 07:00+01", {Mon}},
        {on(both, true, "11-23 07:00:20", 9), "11-23 07:10", NextWeekday, "11-25 07:00+01", both},
        {once(both), "11-23 07:01", NextWeekday, "11-25 07:00+01", {Wed}},
        {on(over, true, "11-29 07:00"), "11-29 07:01", NextWeekday, "11-30 07:00+01", over},
        {on({Mon}, true), "11-23 07:01", Remove, "11-23 07:00+01", {Mon}, "Montag"},
    };
    check(cases, rearmAfterRinging);
}

TEST(RearmTest, atRestore) {
    using enum RearmDecision::Outcome;
    const std::vector<Rang> cases = {
        {dated("11-25 07:00"), "11-25 07:00", Unchanged, "11-25 07:00+01"},
        {daily("11-24 07:00"), "11-25 06:59", Remove, "11-24 07:00+01"},
        {timer(true), "11-25 10:01", Remove, "11-25 10:00+01"},
        {once({Mon, Thu}), "11-24 09:00", NextWeekday, "11-26 07:00+01", {Mon, Thu}},
        {once({}), "11-24 09:00", Remove, "11-23 07:00+01"},
        {once({Mon}), "11-23 09:00", NoDayLeft, "11-23 07:00+01"},
        {once({Mon}), "11-24 09:00", Unchanged, "11-23 07:00+01", {Mon}, "mardi"},
    };
    check(cases, rearmAtRestore);
}

TEST(RearmTest, atStart) {
    using enum RearmDecision::Outcome;
    const WeekdaySet both{Mon, Wed};
    const std::vector<Rang> cases = {
        {dated("11-25 07:00"), "11-25 07:01", Remove, "11-25 07:00+01"},
        {once({Mon}), "11-23 07:00", Unchanged, "11-23 07:00+01", {Mon}},
        {once({Mon}), "11-23 09:00", NextWeekday, "11-30 07:00+01", {Mon}},
        {once(both), "11-25 06:59", NextWeekday, "11-25 07:00+01", both}, // today's is ahead
        {once(both), "11-25 07:01", NextWeekday, "11-30 07:00+01", both},
        {once({}), "11-24 09:00", Remove, "11-23 07:00+01"},
        {once({Mon}), "11-24 09:00", Unchanged, "11-23 07:00+01", {Mon}, "mardi"},
    };
    check(cases, rearmAtStart);
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rearm.h"

#include "core/Alarm.h"
#include "core/NextOccurrence.h"
#include "tests/support/Dates.h"
#include "tests/support/VirtualRunLoop.h"
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
    struct Case {
        const char* name;
        WeekdaySet ticked;
        const char* now;
        const char* time;
        const char* expected;
    };
    // clang-format off
    const Case cases[] = {
        {"today off", {Fri}, "2026-11-25 08:00", "2026-11-25 07:30", "2026-11-27T07:30:00+01:00"},
        {"today on and missed", {Wed, Fri}, "2026-11-25 08:00", "2026-11-25 07:30", "2026-11-27T07:30:00+01:00"},
        {"today on and ahead", {Wed, Fri}, "2026-11-25 08:00", "2026-11-25 09:00", "2026-11-25T09:00:00+01:00"},
        {"today on and right now", {Wed}, "2026-11-25 09:00", "2026-11-25 09:00", "2026-11-25T09:00:00+01:00"},
        {"only today and missed", {Wed}, "2026-11-25 09:01", "2026-11-25 09:00", "2026-12-02T09:00:00+01:00"},
        {"Sunday wraps to Monday", {Mon, Sun}, "2026-11-29 09:01", "2026-11-29 09:00", "2026-11-30T09:00:00+01:00"},
        {"no day", {}, "2026-11-25 09:01", "2026-11-25 09:00", "2026-11-25T09:00:00+01:00"},
        {"over a year's end", {Fri}, "2026-12-30 09:00", "2026-12-30 08:00", "2027-01-01T08:00:00+01:00"},
        {"onto the missing hour", {Sun}, "2026-03-27 09:00", "2026-03-27 02:30", "2026-03-29T03:30:00+02:00"},
        {"onto the doubled hour", {Sun}, "2026-10-23 09:00", "2026-10-23 02:30", "2026-10-25T02:30:00+02:00"},
    };
    // clang-format on
    for (const Case& c : cases) {
        const QDateTime now = at(c.now);
        EXPECT_EQ(text(firstWeekdayDate(c.ticked, at(c.time), now, weekdayName(now.date()))),
                  c.expected)
            << c.name;
    }
    EXPECT_EQ(firstWeekdayDate({Fri}, at("2026-11-25 07:30"), at("2026-11-25 08:00"),
                               QStringLiteral("Mittwoch")),
              at("2026-11-25 07:30"))
        << "a day name that is not English";
}

struct Rang {
    const char* name;
    qint64 kind;
    bool dated, everyDay, repeat, forever;
    WeekdaySet days;
    const char* time;    // stored
    const char* runTime; // null: none
    int snoozed;
    const char* now;
    const char* today; // null: the English name
    Outcome outcome;
    const char* due; // after the decision was carried out
    WeekdaySet left;
};

AlarmPtr alarmOf(const Rang& c, VirtualRunLoop& loop) {
    const AlarmPtr alarm = Alarm::create(loop);
    alarm->setSelRowNo(c.kind);
    alarm->setIsTimeWithDate(c.dated);
    alarm->setShouldUseEveryDay(c.everyDay);
    alarm->setShouldRepeat(c.repeat);
    alarm->setShouldUseForever(c.forever);
    alarm->setWeekdays(c.days);
    alarm->setIsMinuteUnits(true);
    alarm->setRingWithinUnits(15);
    if (c.time)
        alarm->setTime(at(c.time));
    if (c.runTime)
        alarm->setRunTime(at(c.runTime));
    alarm->snooze(c.snoozed);
    return alarm;
}

using Decide = RearmDecision (*)(const Alarm&, const QDateTime&, const QString&);

void check(const Rang& c, Decide decide) {
    VirtualRunLoop loop(at(c.now));
    const AlarmPtr alarm = alarmOf(c, loop);
    const QString today = c.today ? QString::fromLatin1(c.today) : weekdayName(loop.now().date());
    const RearmDecision decision = decide(*alarm, loop.now(), today);
    applyRearm(decision, *alarm);
    EXPECT_EQ(decision.outcome, c.outcome) << c.name;
    EXPECT_EQ(text(alarm->time()), c.due) << c.name;
    EXPECT_EQ(alarm->weekdays(), c.left) << c.name;
}

TEST(RearmTest, afterRinging) {
    // clang-format off
    const Rang cases[] = {
        {"dated", 1, true, false, false, false, {}, "2026-11-25 07:00", nullptr, 0, "2026-11-25 07:03", nullptr, Outcome::Remove, "2026-11-25T07:00:00+01:00", {}},
        {"every day, snoozed", 1, true, true, false, false, {}, "2026-11-25 06:45:30", nullptr, 10, "2026-11-25 06:58", nullptr, Outcome::NextDay, "2026-11-26T06:45:00+01:00", {}},
        {"every day into the missing hour", 1, true, true, false, false, {}, "2026-03-28 02:30", nullptr, 0, "2026-03-28 02:30", nullptr, Outcome::NextDay, "2026-03-29T03:30:00+02:00", {}},
        {"every day, kind relative", 0, true, true, false, false, {}, "2026-02-28 23:00", nullptr, 0, "2026-02-28 23:01", nullptr, Outcome::NextDay, "2026-03-01T23:00:00+01:00", {}},
        {"every day without a time", 1, true, true, false, false, {}, nullptr, nullptr, 0, "2026-11-25 07:03", nullptr, Outcome::Remove, "none", {}},
        {"relative", 0, false, false, false, false, {}, nullptr, "2026-11-25 09:45", 0, "2026-11-25 10:03", nullptr, Outcome::Remove, "2026-11-25T10:00:00+01:00", {}},
        {"relative, every day alone does not keep it", 0, false, true, false, false, {}, nullptr, "2026-11-25 09:45", 0, "2026-11-25 10:03", nullptr, Outcome::Remove, "2026-11-25T10:00:00+01:00", {}},
        {"repeating, cleared late", 0, false, false, true, false, {}, nullptr, "2026-11-25 09:45", 0, "2026-11-25 10:03", nullptr, Outcome::NextPeriod, "2026-11-25T10:15:00+01:00", {}},
        {"repeating, snoozed", 0, false, false, true, false, {}, nullptr, "2026-11-25 09:45", 5, "2026-11-25 10:06", nullptr, Outcome::NextPeriod, "2026-11-25T10:15:00+01:00", {}},
        {"Monday once", 2, false, false, false, false, {Mon}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-23 07:01", nullptr, Outcome::Remove, "2026-11-23T07:00:00+01:00", {Mon}},
        {"Monday for ever", 2, false, false, false, true, {Mon}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-23 07:01", nullptr, Outcome::NextWeekday, "2026-11-30T07:00:00+01:00", {Mon}},
        {"Monday and Wednesday for ever", 2, false, false, false, true, {Mon, Wed}, "2026-11-23 07:00:20", "2026-11-23 07:00:20", 9, "2026-11-23 07:10", nullptr, Outcome::NextWeekday, "2026-11-25T07:00:00+01:00", {Mon, Wed}},
        {"Monday and Wednesday once", 2, false, false, false, false, {Mon, Wed}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-23 07:01", nullptr, Outcome::NextWeekday, "2026-11-25T07:00:00+01:00", {Wed}},
        {"Sunday to Monday", 2, false, false, false, true, {Mon, Sun}, "2026-11-29 07:00", "2026-11-29 07:00", 0, "2026-11-29 07:01", nullptr, Outcome::NextWeekday, "2026-11-30T07:00:00+01:00", {Mon, Sun}},
        {"no English day name", 2, false, false, false, true, {Mon}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-23 07:01", "Montag", Outcome::Remove, "2026-11-23T07:00:00+01:00", {Mon}},
    };
    // clang-format on
    for (const Rang& c : cases)
        check(c, rearmAfterRinging);
}

TEST(RearmTest, atRestore) {
    // clang-format off
    const Rang cases[] = {
        {"still ahead", 1, true, false, false, false, {}, "2026-11-25 07:00", nullptr, 0, "2026-11-25 06:59", nullptr, Outcome::Unchanged, "2026-11-25T07:00:00+01:00", {}},
        {"due right now", 1, true, false, false, false, {}, "2026-11-25 07:00", nullptr, 0, "2026-11-25 07:00", nullptr, Outcome::Unchanged, "2026-11-25T07:00:00+01:00", {}},
        {"past, every day", 1, true, true, false, false, {}, "2026-11-24 07:00", nullptr, 0, "2026-11-25 06:59", nullptr, Outcome::Remove, "2026-11-24T07:00:00+01:00", {}},
        {"past, repeating", 0, false, false, true, false, {}, nullptr, "2026-11-24 07:00", 0, "2026-11-25 06:59", nullptr, Outcome::Remove, "2026-11-24T07:15:00+01:00", {}},
        {"past weekday", 2, false, false, false, false, {Mon, Thu}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-24 09:00", nullptr, Outcome::NextWeekday, "2026-11-26T07:00:00+01:00", {Mon, Thu}},
        {"past weekday, no day ticked", 2, false, false, false, false, {}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-24 09:00", nullptr, Outcome::Remove, "2026-11-23T07:00:00+01:00", {}},
        {"today was its last day: rings at once", 2, false, false, false, false, {Mon}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-23 09:00", nullptr, Outcome::NextWeekday, "2026-11-23T07:00:00+01:00", {}},
        {"no English day name", 2, false, false, false, false, {Mon}, "2026-11-23 07:00", "2026-11-23 07:00", 0, "2026-11-24 09:00", "mardi", Outcome::Unchanged, "2026-11-23T07:00:00+01:00", {Mon}},
    };
    // clang-format on
    for (const Rang& c : cases)
        check(c, rearmAtRestore);
}

TEST(RearmTest, dailyAlarmCrossesBothOddNightsOfFourZonesOnceADay) {
    struct Case {
        const char* zone;
        QDate first;
        QTime time;
    };
    // Three days around each change, at a time inside the missing or the doubled hour.
    const Case cases[] = {
        {"Europe/Berlin", {2026, 3, 28}, {2, 30}},
        {"Europe/Berlin", {2026, 10, 24}, {2, 30}},
        {"America/New_York", {2026, 3, 7}, {2, 30}},
        {"America/New_York", {2026, 10, 31}, {1, 30}},
        {"Australia/Lord_Howe", {2026, 10, 3}, {2, 15}},
        {"Australia/Lord_Howe", {2026, 4, 4}, {1, 45}},
        {"America/Santiago", {2026, 9, 5}, {0, 30}},
        {"America/Santiago", {2026, 4, 4}, {23, 30}},
    };
    for (const Case& c : cases) {
        const ZoneScope zone(c.zone);
        VirtualRunLoop loop(QDateTime(c.first, c.time));
        const AlarmPtr alarm = Alarm::initWithTime(loop, loop.now(), QString());
        alarm->setIsTimeWithDate(true);
        alarm->setShouldUseEveryDay(true);
        for (int day = 1; day <= 3; ++day) {
            const QDateTime before = alarm->time();
            loop.setWall(before);
            applyRearm(rearmAfterRinging(*alarm, loop.now(), QString()), *alarm);
            const qint64 minutes = before.secsTo(alarm->time()) / 60;
            EXPECT_EQ(alarm->time().date(), c.first.addDays(day)) << c.zone << day;
            EXPECT_GE(minutes, 22 * 60) << c.zone << day;
            EXPECT_LE(minutes, 26 * 60) << c.zone << day;
        }
    }
}

} // namespace

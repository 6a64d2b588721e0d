// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/AnnouncementPlan.h"

#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// As the journal has it at the end of a run.
JournalContents journalOf(const std::vector<AlarmOf>& alarms) {
    JournalContents journal;
    for (const AlarmOf& values : alarms) {
        const AlarmPtr alarm = values.alarm();
        const AlarmPtr kept = alarm->storedCopy(); // snoozes are in the due time alone
        journal.running.push_back({kept, *alarm->due({})});
    }
    return journal;
}

// What is shown, then what is next. As announcers follow each other: what one told, the next knows.
std::string announced(const JournalContents& journal, std::vector<ToldAlarm>& told,
                      const char* now) {
    const AnnouncementPlan plan = planAnnouncements(journal, told, instantOf(at(now)));
    told = toldIn(encoded(plan.told));
    std::string all;
    for (const UserNotification& each : plan.notifications)
        all += (each.subtitle + u' ' + each.informativeText).toStdString() + "; ";
    return all + (plan.next ? brief(localDateTimeOf(*plan.next)) : "-");
}

TEST(AnnouncementPlanTest, eachDueTimeIsToldOnceAndWhatRepeatsMovesOn) {
    const WeekdaySet monAndTue{Weekday::Monday, Weekday::Tuesday};
    struct Look {
        const char* now;
        const char* announced;
    };
    const struct {
        AlarmOf alarm;
        std::vector<Look> looks;
    } rows[] = {
        // An hour in a day and a half without the program: once each time, also after a long sleep.
        {{.title = "tea", .minutes = 30, .runTime = "11-23 09:00"},
         {{"11-23 09:29:59", "11-23 09:30+01"},
          {"11-23 09:30:05", "Mon, 9:30 tea; -"},
          {"11-23 09:30:06", "-"}}},
        {{.title = "nap", .minutes = 30, .runTime = "11-23 09:00", .snoozed = 5},
         {{"11-23 09:30:05", "11-23 09:35+01"}, {"11-23 09:35:05", "Mon, 9:35 nap; -"}}},
        {{.title = "pills", .kind = Alarm::Dated, .time = "11-23 07:00", .everyDay = true},
         {{"11-23 07:00:05", "Mon, 7:00 pills; 11-24 07:00+01"},
          {"11-23 07:00:05", "11-24 07:00+01"},
          {"11-24 07:00:05", "Tue, 7:00 pills; 11-25 07:00+01"},
          {"12-24 12:00", "Thu, 7:00 pills; 12-25 07:00+01"},
          {"12-24 12:01", "12-25 07:00+01"}}},
        // It moves on as it does when it rings, over the nights on which clocks are set too.
        {{.title = "sun", .kind = Alarm::Dated, .time = "03-28 02:30", .everyDay = true},
         {{"03-28 02:30:05", "Sat, 2:30 sun; 03-29 03:30+02"},
          {"10-26 12:00", "Mon, 2:30 sun; 10-27 02:30+01"}}},
        {{.title = "walk", .minutes = 20, .runTime = "11-23 09:00", .snoozed = 3, .repeats = true},
         {{"11-23 09:23:05", "Mon, 9:23 walk; 11-23 09:40+01"},
          {"11-30 11:50", "Mon, 11:40 walk; 11-30 12:00+01"},
          {"11-30 12:00:05", "Mon, 12:00 walk; 11-30 12:20+01"}}},
        {{.title = "never", .minutes = 0, .runTime = "11-23 09:00", .repeats = true},
         {{"11-23 09:00:05", "Mon, 9:00 never; -"}}},
        // Its days are used up, the one of a snooze past midnight too.
        {{.title = "school",
          .kind = Alarm::Weekly,
          .time = "11-23 23:58",
          .runTime = "11-23 23:58",
          .snoozed = 5,
          .days = monAndTue},
         {{"11-24 00:03:05", "Tue, 0:03 school; 11-24 23:58+01"},
          {"11-24 23:58:05", "Tue, 23:58 school; -"},
          {"12-01 23:58:05", "-"}}},
        {{.title = "work",
          .kind = Alarm::Weekly,
          .time = "11-24 08:00",
          .runTime = "11-24 08:00",
          .days = monAndTue,
          .forever = true},
         {{"11-24 08:00:05", "Tue, 8:00 work; 11-30 08:00+01"},
          {"12-20 10:00", "Tue, 8:00 work; 12-21 08:00+01"}}},
        // A clock that was wrong at a login, and is set: what is ahead again is told at its time.
        {{.title = "exam", .kind = Alarm::Dated, .time = "11-23 09:00"},
         {{"2035-11-23 09:00", "23 Nov 2026, 9:00 exam; -"},
          {"11-22 09:00", "11-23 09:00+01"},
          {"11-23 09:00:05", "Mon, 9:00 exam; -"}}},
    };
    for (const auto& row : rows) {
        std::vector<ToldAlarm> told;
        for (const Look& look : row.looks)
            EXPECT_EQ(announced(journalOf({row.alarm}), told, look.now), look.announced)
                << row.alarm.title << " " << look.now;
    }
}

TEST(AnnouncementPlanTest, whatRangIsNotToldAndWhatPassedEarlierIsToldTogether) {
    JournalContents journal = journalOf(
        {{.title = "two\nlines", .kind = Alarm::Dated, .time = "11-23 09:00", .everyDay = true},
         {.title = "tea", .kind = Alarm::Dated, .time = "11-23 10:00"},
         {.title = "egg", .kind = Alarm::Dated, .time = "11-23 09:59"},
         {.title = "egg", .kind = Alarm::Dated, .time = "11-23 09:59"}});
    journal.events = {{JournalEvent::What::Rang, {}, instantOf(at("11-23 09:00")), u"two lines"_qs},
                      {JournalEvent::What::Passed, {}, instantOf(at("11-23 10:00")), u"tea"_qs}};
    std::vector<ToldAlarm> told;
    EXPECT_EQ(announced(journal, told, "11-23 10:00:05"),
              "Mon, 9:59 egg; Mon, 10:00 tea; 11-24 09:00+01")
        << "what the eye cannot tell apart is told once";
    told.at(1).wasShown = false;
    EXPECT_EQ(announced(journal, told, "11-23 10:00:06"), "11-24 09:00+01");
    EXPECT_EQ(told.size(), 2U) << "what it takes to know that";
    EXPECT_TRUE(told[0].wasShown);
    EXPECT_FALSE(told[1].wasShown) << "the next start tells of it";
    for (int i = 0; i < 9; ++i)
        journal.running.push_back(
            journalOf({{.title = "more", .minutes = i, .runTime = "11-24 08:00"}}).running[0]);
    EXPECT_EQ(announced(journal, told, "11-24 09:05"),
              "Passed while Dorvane was not running: "
              "Tue, 8:00  more\nTue, 8:01  more\nTue, 8:02  more\nTue, 8:03  more\n"
              "Tue, 8:04  more\nTue, 8:05  more\nTue, 8:06  more\nTue, 8:07  more\n"
              "Tue, 8:08  more\nTue, 9:00  two lines; 11-25 09:00+01");
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RestoredAlarms.h"

#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// Stored on Sunday evening; the machine is started on Monday, the 23rd, at nine.
const AlarmOf stored[] = {
    {.title = "timer", .minutes = 30, .runTime = "11-22 22:00"},
    {.title = "long timer", .hours = 20, .runTime = "11-22 22:00"},
    {.title = "this week",
     .kind = Alarm::Weekly,
     .time = "11-23 07:00",
     .runTime = "11-23 07:00",
     .days = {Weekday::Monday, Weekday::Thursday}},
    {.title = "workdays",
     .kind = Alarm::Weekly,
     .time = "11-23 09:30",
     .runTime = "11-23 09:30",
     .days = {Weekday::Monday, Weekday::Tuesday},
     .forever = true},
    {.title = "past", .kind = Alarm::Dated, .time = "11-23 08:00"},
    {.title = "ahead", .kind = Alarm::Dated, .time = "11-23 20:00", .wished = {19, 30}},
};

// Runs only after a crash, with those.
const AlarmOf rhythm{.title = "rhythm", .minutes = 7, .runTime = "11-22 22:00", .repeats = true};

struct Start {
    const char* name;
    const char* clock; // what it shows at the start
    RunLoop::Milliseconds after = 2min;
    const char* set = "11-23 09:02"; // to what it is set then; null: the machine sleeps for an hour
    const char* running;
    const char* dropped = "timer past ";
    const char* own = "11-23 09:52+01"; // of 51 minutes, set one after the start
    const char* told = "";
    bool resumes = false; // after an end that was none in order
};

// What a start with the right clock decides.
constexpr auto resumed = "long timer 11-23 18:02+01|this week 11-26 07:00+01|"
                         "workdays 11-23 09:32+01|ahead 11-23 20:02+01|rhythm 11-23 09:05+01|";
constexpr auto right = "ahead 11-23 20:00+01|workdays 11-23 09:30+01|"
                       "this week 11-26 07:00+01|long timer 11-24 05:00+01|";

const Start starts[] = {
    {.name = "right", .clock = "11-23 09:00", .running = right},
    {.name = "YearAhead",
     .clock = "2027-11-23 09:00",
     .running = "ahead 11-23 20:00+01|long timer 11-24 05:02+01|workdays 11-23 09:30+01|"
                "this week 11-26 07:00+01|",
     .told = "back: long timer ahead moved: this week "},
    {.name = "YearsBehind",
     .clock = "2000-01-01 00:00",
     .running = "ahead 11-23 20:00+01|workdays 11-23 09:30+01|this week 11-26 07:00+01|"
                "long timer 11-24 05:00+01|timer 11-23 09:30+01|",
     .dropped = "past ",
     .told = "dropped: past moved: this week "},
    {.name = "SetTooLate",
     .clock = "2027-11-23 09:00",
     .after = 11min,
     .running = "workdays 2027-11-23 09:30+01|this week 2027-11-25 07:00+01|",
     .dropped = "timer long timer past ahead ",
     .own = "2027-11-23 09:52+01"},
    {.name = "Asleep", .clock = "11-23 09:00", .set = nullptr, .running = right},
    {.name = "AfterACrash",
     .clock = "11-23 09:00",
     .running = resumed,
     .dropped = "past timer ",
     .resumes = true},
    {.name = "YearAheadAfterACrash",
     .clock = "2027-11-23 08:56",
     .running = "long timer 11-23 18:02+01|this week 11-26 07:00+01|ahead 11-23 20:02+01|workdays "
                "11-23 09:32+01|rhythm 11-23 09:05+01|",
     .dropped = "past timer ",
     .told = "back: ahead this week long timer moved: rhythm this week ",
     .resumes = true},
    // It rings and is snoozed by the wrong clock, from which it counts.
    {.name = "RhythmThatRang",
     .clock = "2027-11-23 08:59",
     .running = "long timer 11-23 18:02+01|this week 11-26 07:00+01|ahead 11-23 20:02+01|workdays "
                "11-23 09:32+01|rhythm 11-23 09:01+01|",
     .dropped = "past timer ",
     .told = "back: ahead this week long timer moved: this week ",
     .resumes = true},
};

class RestoredAlarmsTest : public ::testing::TestWithParam<Start>, protected AlarmDelegate {
protected:
    void alarmTriggered(const AlarmPtr& alarm) override { alarm->setIsTriggered(true); }

    static std::string titles(const char* what, const auto& alarms) {
        std::string all = alarms.empty() ? "" : what;
        for (const auto& each : alarms) {
            if constexpr (requires { each.due; })
                all += each.alarm->title().toStdString() + " ";
            else
                all += each->title().toStdString() + " ";
        }
        return all;
    }
    // All of them had been snoozed.
    static std::vector<RunningAlarm> left(const std::vector<AlarmPtr>& list) {
        std::vector<RunningAlarm> running;
        for (const AlarmPtr& alarm : list)
            running.push_back({alarm, *alarm->due({}) + 2min});
        return running;
    }
    std::string running() const {
        std::string all;
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            if (alarm != m_own)
                all += alarm->title().toStdString() + " " + brief(alarm->time(instantNow(m_loop))) +
                       "|";
        return all;
    }

    VirtualRunLoop m_loop{at(GetParam().clock)};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    RestoredAlarms m_restored{m_loop, m_clock};
    AlarmPtr m_own;
};

TEST_P(RestoredAlarmsTest, aClockThatIsSetSoonAfterTheStartHasEverythingDecidedAgain) {
    std::vector<AlarmPtr> list;
    for (const AlarmOf& values : stored)
        list.push_back(values.alarm());
    if (GetParam().resumes)
        list.push_back(rhythm.alarm());
    if (GetParam().resumes)
        m_restored.resume(left(list), {}, *this);
    else
        m_restored.restore(list, *this);
    m_loop.advance(1min);
    m_own = AlarmOf{.title = "own", .minutes = 50}.alarm();
    m_clock.insertAlarm(m_own);
    m_own->snooze(1);
    m_loop.advance(GetParam().after - 1min);
    std::string told;
    m_restored.setCorrected([&](const RestoredAlarms::Decisions& changes) {
        told = titles("back: ", changes.back) + titles("dropped: ", changes.dropped) +
               titles("moved: ", changes.movedOn);
    });
    if (GetParam().set)
        m_loop.setWall(at(GetParam().set));
    else
        m_loop.sleepMachine(10min);
    m_loop.setWall(m_loop.now()); // to what it shows: nothing is left to correct
    EXPECT_EQ(running(), GetParam().running);
    EXPECT_EQ(titles("", m_restored.dropped()), GetParam().dropped);
    EXPECT_EQ(brief(m_own->time(instantNow(m_loop))), GetParam().own);
    EXPECT_EQ(told, GetParam().told);
    for (const AlarmPtr& alarm : list)
        EXPECT_EQ(alarm->wishedTime().isValid(), alarm->title() == u"ahead")
            << "what was asked for";
}

INSTANTIATE_TEST_SUITE_P(Starts, RestoredAlarmsTest, ::testing::ValuesIn(starts),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace

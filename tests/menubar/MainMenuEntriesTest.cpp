// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MainMenuEntries.h"

#include "core/AlarmPause.h"
#include "tests/menubar/RecordedCommands.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

const QDateTime tuesday({2026, 11, 24}, {10, 0});

AlarmPtr timerDueIn(int seconds) {
    AlarmPtr alarm = AlarmOf{.kind = Alarm::Weekly, .isPreset = true}.alarm();
    alarm->setTime(tuesday.addSecs(seconds)); // due to the second
    return alarm;
}

MainMenuState stateWith(std::vector<AlarmPtr> alarms) {
    return {.alarms = std::move(alarms),
            .storedAlarms = {},
            .noAlarmString = {},
            .now = instantOf(tuesday),
            .locale = QLocale::c()};
}

// A line for each entry: title, subtitle in brackets, what a click does.
QString outline(const std::vector<MenuEntry>& entries, const QString& indent = {}) {
    QString lines;
    for (const MenuEntry& entry : entries) {
        lines += indent + (entry.isSeparator ? u"--"_qs : entry.title);
        if (!entry.subtitle.isEmpty())
            lines += u" [%1]"_qs.arg(entry.subtitle);
        QStringList trace;
        const MenuCommands commands = recordedCommands(trace);
        if (const auto command = commandOf(entry, commands))
            command();
        if (!trace.isEmpty())
            lines += u" = "_qs + trace.join(u',');
        lines += u'\n' + outline(entry.children, indent + u"  "_qs);
    }
    return lines;
}

TEST(MainMenuEntriesTest, runningAndStoredAlarms) {
    MainMenuState state = stateWith(
        {AlarmOf{.title = "Tea & cake", .kind = Alarm::Dated, .time = "12-01 18:05"}.alarm(),
         AlarmOf{.title = "Lost", .kind = Alarm::Dated}.alarm(), timerDueIn(600),
         AlarmOf{.title = "Held", .kind = Alarm::Dated, .time = "11-24 18:05", .everyDay = true}
             .alarm(),
         AlarmOf{.title = "Daily", .kind = Alarm::Dated, .time = "11-24 18:05", .everyDay = true}
             .alarm()});
    state.alarms[3]->setHeldUntil(untilResumed);
    state.pausedUntil = instantOf(at("12-01 00:00"));
    const AlarmOf up{.title = "Up", .kind = Alarm::Dated, .time = "11-24 07:30", .isListed = true};
    const AlarmOf gone{.title = "Gone", .kind = Alarm::Dated, .isListed = true};
    state.storedAlarms = {{AlarmOf{.title = "not listed"}.alarm(), up.alarm(), gone.alarm()}};
    state.breaksRun = true;
    state.nextBreak = u"break at 10:25"_qs;
    EXPECT_EQ(outline(mainMenuEntries(state)).toStdString(), R"(Active alarms:
1 Dec, 18:05 [Tea & cake]
  Edit... = editAlarm Tea & cake
  Clear = clearFromMenu Tea & cake
  Save = saveFromMenu Tea & cake
  Delete = deleteAlarm Tea & cake
Needs a look [Lost]
  Edit... = editAlarm Lost
  Clear = clearFromMenu Lost
  Save = saveFromMenu Lost
  Delete = deleteAlarm Lost
In 10 mins at 10:10
  Edit... = editAlarm 
  Clear = clearFromMenu 
  Delete = deleteAlarm 
Paused [Held]
  Edit... = editAlarm Held
  Clear = clearFromMenu Held
  Save = saveFromMenu Held
  Delete = deleteAlarm Held
Tue, 18:05 [Daily]
  Edit... = editAlarm Daily
  Clear = clearFromMenu Daily
  Save = saveFromMenu Daily
  Delete = deleteAlarm Daily
  Skip next = skipNext Daily
--
Create alarm... = createAlarm
Alarms... = showAlarms
Pause alarms [paused until 1 Dec]
  Resume = resumeAlarms
  Until tomorrow = pauseAlarms 1
  For a week = pauseAlarms 7
  Until I resume = pauseAlarms 0
--
Timer...
  1 min = createPreAlarm 1
  2 min = createPreAlarm 2
  3 min = createPreAlarm 3
  4 min = createPreAlarm 4
  5 min = createPreAlarm 5
  10 min = createPreAlarm 10
  15 min = createPreAlarm 15
  20 min = createPreAlarm 20
  30 min = createPreAlarm 30
  45 min = createPreAlarm 45
  Other... = quick
--
Respito... [break at 10:25]
  Stop = stopRespito
  Preferences... = createRespito
--
--
Inactive alarms:
24 Nov, 7:30 [Up] = setAlarm Up
  Edit... = editAlarm Up
  Delete = deleteAlarm Up
Needs a look [Gone] = editAlarm Gone
  Edit... = editAlarm Gone
  Delete = deleteAlarm Gone
--
Preferences... = openPrefs
Help... = showGoogleHelp
--
Quit = terminate
)");
}

TEST(MainMenuEntriesTest, nothingRunsAndNothingIsStored) {
    MainMenuState state = stateWith({});
    const QString empty = outline(mainMenuEntries(state));
    EXPECT_TRUE(empty.startsWith(u"Active alarms:\nNo Alarms\n--\nCreate"_qs));
    EXPECT_TRUE(empty.contains(u"\nRespito...\n  Start = startRespito\n"_qs));
    EXPECT_TRUE(empty.contains(u"createRespito\n--\n--\nPreferences..."_qs));
    state.showsBreaks = false;
    EXPECT_TRUE(outline(mainMenuEntries(state)).contains(u"  Other... = quick\n--\n--\nPref"_qs));
    state.noAlarmString = u"All quiet"_qs;
    state.storedAlarms.emplace(); // a store that cannot be read
    const QString quiet = outline(mainMenuEntries(state));
    EXPECT_TRUE(quiet.startsWith(u"Active alarms:\nAll quiet\n--"_qs));
    EXPECT_TRUE(quiet.contains(u"\n--\n--\nInactive alarms:\n--\n"_qs));
}

// As long as they take, or when they would ring if they were started now.
TEST(MainMenuEntriesTest, storedAlarmsAreListedByWhatTheyWouldDo) {
    MainMenuState state = stateWith({timerDueIn(-1), timerDueIn(-1), timerDueIn(-1)});
    EXPECT_FALSE(outline(mainMenuEntries(state)).contains(u"clearAll"_qs));
    for (const AlarmPtr& alarm : state.alarms)
        alarm->setIsTriggered(true);
    state.storedAlarms = {
        {AlarmOf{.minutes = 30, .runTime = "11-24 07:00", .isListed = true}.alarm(),
         AlarmOf{.hours = 1, .isListed = true}.alarm(),
         AlarmOf{.kind = Alarm::Dated, .time = "11-20 09:30", .everyDay = true, .isListed = true}
             .alarm(),
         AlarmOf{.title = "weekly",
                 .kind = Alarm::Weekly,
                 .time = "11-23 09:30",
                 .days = {Weekday::Monday},
                 .isListed = true}
             .alarm()}};
    const QString menu = outline(mainMenuEntries(state));
    EXPECT_TRUE(menu.contains(u"\nClear all that ring = clearAll\n--\nCreate"_qs));
    for (const auto& line : {u"\n30 min = setAlarm"_qs, u"\n1 hour = setAlarm"_qs,
                             u"\nWed, 9:30 = setAlarm"_qs, u"\nMon, 9:30 [weekly]"_qs})
        EXPECT_TRUE(menu.contains(line)) << qPrintable(line) << qPrintable(menu);
}

TEST(MainMenuEntriesTest, countdownOfATimer) {
    const struct {
        int seconds;
        const char* plain;
        const char* twelveHours;
    } cases[] = {
        {3 * 3600, "In 180 mins at 13:00", "In 180 mins at 1:00 PM"},
        {90, "In 1 mins at 10:01", "In 1 mins at 10:01 AM"},
        {30, "In 0 min at 10:00", "In 0 min at 10:00 AM"},
        {-59, "In 0 min at 9:59", "In 0 min at 9:59 AM"},
        {-60, "In -1 min at 9:59", "In -1 min at 9:59 AM"},
    };
    for (const auto& c : cases) {
        MainMenuState state = stateWith({timerDueIn(c.seconds)});
        EXPECT_EQ(mainMenuEntries(state)[1].title, QLatin1String(c.plain)) << c.seconds;
        state.locale = QLocale(QLocale::English, QLocale::UnitedStates);
        EXPECT_EQ(mainMenuEntries(state)[1].title, QLatin1String(c.twelveHours)) << c.seconds;
    }
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MainMenuEntries.h"

#include "tests/menubar/RecordedCommands.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

const QDateTime tuesday({2026, 11, 24}, {10, 0});

class MainMenuEntriesTest : public ::testing::Test {
protected:
    [[nodiscard]] AlarmPtr timerDueIn(int seconds) const {
        AlarmPtr alarm = AlarmOf{.kind = Alarm::Weekly, .isPreset = true}.alarm();
        alarm->setTime(tuesday.addSecs(seconds)); // due to the second
        return alarm;
    }
    [[nodiscard]] MainMenuState stateWith(std::vector<AlarmPtr> alarms) const {
        return {.alarms = std::move(alarms),
                .storedAlarms = {},
                .noAlarmString = {},
                .now = instantOf(m_loop.now()),
                .locale = QLocale::c()};
    }

    VirtualRunLoop m_loop{tuesday};
};

// A line for each entry: title, subtitle in brackets, what a click does.
void outline(const std::vector<MenuEntry>& entries, const QString& indent, QStringList& lines) {
    for (const MenuEntry& entry : entries) {
        QString line = indent + (entry.isSeparator ? u"--"_qs : entry.title);
        if (!entry.subtitle.isEmpty())
            line += u" [%1]"_qs.arg(entry.subtitle);
        QStringList trace;
        const MenuCommands commands = recordedCommands(trace);
        if (const auto command = commandOf(entry, commands))
            command();
        if (!trace.isEmpty())
            line += u" = "_qs + trace.join(u',');
        lines << line;
        outline(entry.children, indent + u"  "_qs, lines);
    }
}

std::string outlineOf(const std::vector<MenuEntry>& entries) {
    QStringList lines;
    outline(entries, {}, lines);
    return lines.join(u'\n').toStdString();
}

constexpr const char* settablePart = R"(--
Create alarm... = createAlarm
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
--
Respito...
  )";
constexpr const char* applicationPart = R"(
  Preferences... = createRespito
--
--
Preferences... = openPrefs
Help... = showGoogleHelp
--
Quit = terminate)";

TEST_F(MainMenuEntriesTest, nothingRunsAndNothingIsStored) {
    MainMenuState state = stateWith({});
    EXPECT_EQ(outlineOf(mainMenuEntries(state)), "Active alarms:\nNo Alarms\n" +
                                                     std::string(settablePart) +
                                                     "Start = startRespito" + applicationPart);
    state.noAlarmString = u"All quiet"_qs;
    state.storedAlarms.emplace(); // a store that cannot be read
    const std::string outline = outlineOf(mainMenuEntries(state));
    EXPECT_TRUE(outline.starts_with("Active alarms:\nAll quiet\n--"));
    EXPECT_NE(outline.find("\n--\n--\nInactive alarms:\n--\n"), std::string::npos);
}

TEST_F(MainMenuEntriesTest, runningAndStoredAlarms) {
    MainMenuState state = stateWith(
        {AlarmOf{.title = "Tea & cake", .kind = Alarm::Dated, .time = "11-24 18:05"}.alarm(),
         timerDueIn(600)});
    const AlarmOf up{.title = "Up", .kind = Alarm::Dated, .time = "11-24 07:30", .isListed = true};
    state.storedAlarms = {{AlarmOf{.title = "not listed"}.alarm(), up.alarm()}};
    state.breaksRun = true;
    EXPECT_EQ(outlineOf(mainMenuEntries(state)), std::string(R"(Active alarms:
Tue, 18:05 [Tea & cake]
  Edit... = editAlarm Tea & cake
  Clear = clearFromMenu Tea & cake
  Save = saveFromMenu Tea & cake
  Delete = deleteAlarm Tea & cake
In 10 mins at 10:10
  Edit... = editAlarm 
  Clear = clearFromMenu 
  Delete = deleteAlarm 
)") + settablePart + R"(Stop = stopRespito
  Preferences... = createRespito
--
--
Inactive alarms:
Tue, 7:30 [Up] = setAlarm Up
  Edit... = editAlarm Up
  Delete = deleteAlarm Up
--
Preferences... = openPrefs
Help... = showGoogleHelp
--
Quit = terminate)");
}

TEST_F(MainMenuEntriesTest, countdownOfATimer) {
    struct Case {
        int seconds;
        const char* plain;
        const char* twelveHours;
    };
    const Case cases[] = {
        {3 * 3600, "In 180 mins at 13:00", "In 180 mins at 1:00 PM"},
        {90, "In 1 mins at 10:01", "In 1 mins at 10:01 AM"},
        {30, "In 0 min at 10:00", "In 0 min at 10:00 AM"},
        {-59, "In 0 min at 9:59", "In 0 min at 9:59 AM"},
        {-60, "In -1 min at 9:59", "In -1 min at 9:59 AM"},
    };
    for (const Case& c : cases) {
        MainMenuState state = stateWith({timerDueIn(c.seconds)});
        EXPECT_EQ(mainMenuEntries(state)[1].title, QLatin1String(c.plain)) << c.seconds;
        state.locale = QLocale(QLocale::English, QLocale::UnitedStates);
        EXPECT_EQ(mainMenuEntries(state)[1].title, QLatin1String(c.twelveHours)) << c.seconds;
    }
}

} // namespace

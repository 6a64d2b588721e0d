// SPDX-License-Identifier: GPL-3.0-or-later
// Scenes in which two alarms meet, or one and its stored copy, the night, the menu: who is set,
// what happens, and what is heard, seen and kept then.
#include "core/NotificationNames.h"
#include "tests/menubar/MenuFixture.h"

using namespace dorvane::testing;

namespace {

struct Step {
    const char* what;  // see SceneTest::perform()
    const char* heard; // what sounds begin and end meanwhile
    const char* seen;  // the windows after it, and "!" while the icon flashes
};

struct Scene {
    const char* name;
    std::vector<AlarmOf> set; // on Monday at eight; the sound of each lasts a minute
    std::vector<Step> steps;
    const char* kept; // running at the end, with the time at which each is due
    const char* told; // what the journal and the bus hear, but for the rings themselves
};

constexpr auto Mon = Weekday::Monday;
constexpr auto Tue = Weekday::Tuesday;
constexpr auto Wed = Weekday::Wednesday;

const Scene scenes[] = {
    {.name = "DailyAndAsleepForDays",
     .set = {{.title = "A", .kind = Alarm::Dated, .time = "11-23 08:30", .everyDay = true}},
     .steps = {{"sleep 75h", "A+", "A!"}, {"clear A", "A-", ""}, {"wait 1m", "", ""}},
     .kept = "A 11-27 08:30",
     .told = "A cleared A missed 11-26 08:30"},
    {.name = "RhythmWithNobodyThere",
     .set = {{.title = "A", .minutes = 1, .repeats = true, .snoozeTime = 2}},
     .steps = {{"wait 2m", "A+ A-", "A!"}, {"wait 90s", "A+", "A!"}, {"end A", "A-", ""}},
     .kept = "",
     .told = "A unanswered A missed 11-23 08:02 A cleared"},
    {.name = "DueBeforeMidnightAnsweredAfter",
     .set = {{.title = "A", .kind = Alarm::Weekly, .time = "11-23 23:58", .days = {Mon, Tue, Wed}}},
     .steps = {{"sleep 957m", "", ""}, {"wait 2m", "A+ A-", "A!"}, {"wait 5m", "", ""}},
     .kept = "A 11-24 23:58",
     .told = "A unanswered"},
    {.name = "SnoozeAfterASleepCountsFromThePress",
     .set = {{.title = "A", .minutes = 10}},
     .steps = {{"wait 10m", "A+", "A!"},
               {"sleep 2h", "", "A!"},
               {"snooze A", "A-", ""},
               {"wait 4m", "", ""},
               {"wait 1m", "A+", "A!"}},
     .kept = "A 11-23 10:15",
     .told = "A snoozed"},
    {.name = "AnUnansweredOneSilencesNoOther",
     .set = {{.title = "A", .minutes = 1, .snoozeTime = 2},
             {.title = "B", .kind = Alarm::Weekly, .time = "11-23 08:02:30", .days = {Mon}}},
     .steps = {{"wait 60s", "A+", "A!"},
               {"wait 80s", "A-", "A!"},
               {"wait 10s", "B+", "A B!"},
               {"wait 40s", "", "B!"},
               {"clear B", "B-", ""}},
     .kept = "",
     .told = "A unanswered B cleared"},
    {.name = "NeitherAnswerNorClearNorDeleteSilencesAnother",
     .set = {{.title = "A", .minutes = 1},
             {.title = "B", .minutes = 1},
             {.title = "C", .minutes = 1},
             {.title = "D", .minutes = 9}},
     .steps = {{"wait 61s", "C+ B+ A+", "A B C!"},
               {"end D", "", "A B C!"},
               {"snooze A 30", "A-", "B C!"},
               {"delete B", "B-", "C!"},
               {"clear C", "C-", ""}},
     .kept = "A 11-23 08:31",
     .told = "A snoozed B cleared C cleared"},
    {.name = "WhatEndedUnheardBehindAnotherGoesOnAfterIt",
     .set = {{.title = "B", .minutes = 1}, {.title = "A", .minutes = 1, .fades = true}},
     .steps = {{"wait 61s", "A+ B+", "A B!"},
               {"wait 15s", "", "A B!"},
               {"wait 15s", "A-", "A B!"},
               {"clear B", "B- A+", "A!"},
               {"clear A", "A-", ""}},
     .kept = "",
     .told = "B cleared A cleared"},
    {.name = "UntilAnsweredTheSoundGoesOnForAsLongAsTheSnooze",
     .set = {{.title = "A", .minutes = 1, .snoozeTime = 2, .untilAnswered = true},
             {.title = "B", .minutes = 1, .untilAnswered = true}},
     .steps = {{"wait 61s", "B+ A+", "A B!"},
               {"wait 1m", "B- A- B+ A+", "A B!"},
               {"clear B", "B-", "A!"},
               {"wait 30s", "", "A!"},
               {"wait 29s", "A-", ""}},
     .kept = "",
     .told = "B cleared A unanswered"},
    {.name = "ThreeThatRingAreClearedAtOnce",
     .set = {{.title = "A", .minutes = 1, .repeats = true},
             {.title = "B", .minutes = 1},
             {.title = "C", .minutes = 1},
             {.title = "D", .minutes = 9}},
     .steps = {{"wait 61s", "C+ B+ A+", "A B C!"}, {"clear all", "C- B- A-", ""}},
     .kept = "D 11-23 08:09 A 11-23 08:02",
     .told = "C cleared B cleared A cleared"},
    {.name = "AMenuThatWasClickedOpenHoldsUpTheWindowForThreeSeconds",
     .set = {{.title = "A", .minutes = 1}},
     .steps = {{"press", "", "menu"},
               {"wait 60s", "A+", "menu!"},
               {"wait 1s", "", "menu!"},
               {"wait 2s", "", "A!"},
               {"press", "", "A menu!"}, // which is in nobody's way
               {"wait 10s", "", "A menu!"}},
     .kept = "A 11-23 08:01",
     .told = ""},
    {.name = "AMenuThatNobodyClickedOpenHoldsUpNothing",
     .set = {{.title = "A", .minutes = 1, .repeats = true, .snoozeTime = 2}},
     .steps = {{"start again", "", "menu"},
               {"wait 60s", "A+", "A!"},
               {"start again", "", "A menu!"},
               {"wait 2m", "A- A+", "A!"}},
     .kept = "A 11-23 08:03",
     .told = "A unanswered A missed 11-23 08:02"},
    {.name = "WhatIsAnsweredBeforeItsWindowCouldComeHasNone",
     .set = {{.title = "A", .minutes = 1}},
     .steps = {{"press", "", "menu"},
               {"wait 60s", "A+", "menu!"},
               {"delete A", "A-", "menu"},
               {"wait 9s", "", ""}},
     .kept = "",
     .told = "A cleared"},
    {.name = "StartedTwiceItIsOneThatCountsFromThen",
     .set = {{.title = "A", .minutes = 10}},
     .steps = {{"end A", "", ""},
               {"wait 2h", "", ""},
               {"start A", "", ""},
               {"wait 5m", "", ""},
               {"start A", "", ""},
               {"wait 10m", "A+", "A!"},
               {"start A", "A-", ""}},
     .kept = "A 11-23 10:25",
     .told = "A cleared"},
    {.name = "StoredAlarmOfADateThatHasPassedIsOfferedInTheEditor",
     .set = {{.title = "A", .kind = Alarm::Dated, .time = "11-23 08:30"}},
     .steps = {{"end A", "", ""},
               {"sleep 2h", "", ""},
               {"start A", "", "editor"},
               {"start A", "", "editor"},
               {"set", "", ""}},
     .kept = "A 11-24 08:30",
     .told = ""},
    {.name = "StoredAlarmOfEveryDayStartsWithItsNext",
     .set = {{.title = "A", .kind = Alarm::Dated, .time = "11-23 08:30", .everyDay = true}},
     .steps = {{"end A", "", ""}, {"sleep 2h", "", ""}, {"start A", "", ""}, {"wait 1m", "", ""}},
     .kept = "A 11-24 08:30",
     .told = ""},
    {.name = "SnoozeAfterTheClockWasSetBackCountsFromThePress",
     .set = {{.title = "A", .minutes = 10}},
     .steps = {{"wait 10m", "A+", "A!"},
               {"set back 1h", "", "A!"},
               {"snooze A", "A-", ""},
               {"wait 4m", "", ""},
               {"wait 1m", "A+", "A!"}},
     .kept = "A 11-23 07:15",
     .told = "A snoozed"},
    {.name = "ClearInTheMenuTakesTheWindow",
     .set = {{.title = "A", .minutes = 1, .repeats = true}},
     .steps = {{"wait 1m", "A+", "A!"}, {"end A", "A-", ""}, {"wait 1h", "", ""}},
     .kept = "",
     .told = "A cleared"},
};

std::string join(const QStringList& words) {
    return words.join(u' ').toStdString();
}

class SceneTest : public MenuFixture, public ::testing::WithParamInterface<Scene> {
protected:
    SceneTest() {
        loop.setWoken([this] { notifications.post(wakeNotification); });
        m_wakeUps.setOn(true);
    }

    static AlarmPtr titled(const QString& title, const std::vector<AlarmPtr>& alarms) {
        const auto found = std::ranges::find(alarms, title, &Alarm::title);
        return found == alarms.end() ? nullptr : *found;
    }

    // "wait 5s", "sleep 75h": time passes. "clear A", "snooze A", "clear all": buttons of a window.
    // "end A", "delete A", "start A": Clear and Delete in the menu, and the stored alarm there.
    // "set": what the editor shows. "press", "close": the icon is pressed, its menu closed. "start
    // again": the program is. "set back 1h": the clock is.
    void perform(const QString& what) {
        const QString verb = what.section(u' ', 0, 0);
        const QString object = what.section(u' ', 1, 1);
        const AlarmPtr alarm = titled(object, m_clock.allAlarms());
        if (verb == u"wait")
            loop.advance(duration(object));
        else if (verb == u"sleep")
            loop.sleepMachine(duration(object));
        else if (what.startsWith(u"set back"))
            loop.setWall(loop.now().addMSecs(-duration(what.section(u' ', 2)).count()));
        else if (verb == u"set")
            set(*openEditors().front());
        else if (what == u"clear all")
            windowOf(m_clock.allAlarms().back()).clearAllButtonPressed();
        else if (what == u"start again")
            m_controller.openMenu();
        else if (verb == u"press")
            m_item.press();
        else if (verb == u"close")
            menu()->close();
        else if (verb == u"start")
            m_controller.setAlarm(titled(object, *library.alarms()));
        else if (verb == u"delete")
            m_controller.deleteAlarm(alarm);
        else if (verb == u"clear")
            windowOf(alarm).clearButtonPressed();
        else if (what.endsWith(u" 30"))
            chooseHalfAnHour(object);
        else if (verb == u"snooze")
            windowOf(alarm).snoozeButtonPressed();
        else if (verb == u"end")
            m_controller.clearFromMenu(alarm);
        else
            ADD_FAILURE() << qPrintable(what);
        loop.runPending();
    }

    static void chooseHalfAnHour(const QString& title) {
        for (const QWidget* window : windowsNamed("SnoozeWindowController"))
            if (window->accessibleName() == title)
                window->findChild<QMenu*>()->actions().at(4)->trigger();
    }

    static QWidget* menu() { return QApplication::activePopupWidget(); }

    static RunLoop::Milliseconds duration(const QString& text) {
        const int count = text.chopped(1).toInt();
        return text.endsWith(u'h')   ? std::chrono::hours(count)
               : text.endsWith(u'm') ? std::chrono::minutes(count)
                                     : RunLoop::Milliseconds(std::chrono::seconds(count));
    }

    std::string heard() {
        QStringList words;
        for (const std::string& event : trace.events()) {
            const QStringList parts = QString::fromStdString(event).split(u' ');
            if (parts.last() == u"play")
                words << parts[1] + u'+';
            else if (parts.last() == u"stop" || parts.last() == u"finished")
                words << parts[1] + u'-';
        }
        trace.clear();
        return join(words);
    }

    [[nodiscard]] std::string seen() const {
        QStringList titles;
        for (const QWidget* window : windowsNamed("SnoozeWindowController"))
            titles << window->accessibleName();
        titles.sort();
        if (menu())
            titles << u"menu"_qs;
        if (!openEditors().isEmpty())
            titles << u"editor"_qs;
        return join(titles) + (m_item.needsAttention ? "!" : "");
    }

    [[nodiscard]] std::optional<QDateTime> next() const {
        std::optional<QDateTime> nearest;
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            if (const QDateTime due = alarm->time(instantNow(loop)); due > loop.now())
                nearest = std::min(nearest.value_or(due), due);
        return nearest;
    }

    [[nodiscard]] std::string kept() const {
        QStringList alarms;
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            alarms << alarm->title() + u' ' +
                          alarm->time(instantNow(loop)).toString(u"MM-dd HH:mm"_qs);
        return join(alarms);
    }
};

TEST_P(SceneTest, goesAsWritten) {
    const Scene& scene = GetParam();
    for (const AlarmOf& values : scene.set) {
        // On a slow disk, which is why it is read beforehand.
        player.setFile(QString::fromLatin1(values.title), {.duration = 60s, .loadDelay = 5s});
        schedule(values);
    }
    for (const Step& step : scene.steps) {
        SCOPED_TRACE(step.what);
        perform(QString::fromLatin1(step.what));
        EXPECT_EQ(heard(), step.heard);
        EXPECT_EQ(seen(), step.seen);
        if (!QByteArray(step.what).startsWith("set back")) { // what rings is ahead again then
            EXPECT_EQ(m_wakeAlarm.armed, next()) << "for which the machine wakes";
        }
    }
    EXPECT_EQ(kept(), scene.kept);
    EXPECT_EQ(join(m_told.filter(QRegularExpression(u"^(?!.* rings$)"_qs))), scene.told);
}

INSTANTIATE_TEST_SUITE_P(Scenes, SceneTest, ::testing::ValuesIn(scenes),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace

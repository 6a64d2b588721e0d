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
    const char* seen;  // the ringing windows after it, and "!" while the icon flashes
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
    {.name = "RhythmAndAsleepForANight",
     .set = {{.title = "A", .minutes = 20, .repeats = true}},
     .steps = {{"sleep 8h", "A+", "A!"}, {"clear A", "A-", ""}, {"wait 19m", "", ""}},
     .kept = "A 11-23 16:20",
     .told = "A cleared A missed 11-23 16:00"},
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
    }

    [[nodiscard]] AlarmPtr running(const QString& title) const {
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            if (alarm->title() == title)
                return alarm;
        return nullptr;
    }

    // "wait 5s", "sleep 75h": time passes. "clear A", "snooze A": a button of its window. "end A":
    // Clear in the menu. "start A": its stored copy is chosen there. "menu": the icon is pressed.
    void perform(const QString& what) {
        const QString verb = what.section(u' ', 0, 0);
        const QString object = what.section(u' ', 1);
        const AlarmPtr alarm = running(object);
        if (verb == u"wait")
            loop.advance(duration(object));
        else if (verb == u"sleep")
            loop.sleepMachine(duration(object));
        else if (verb == u"clear")
            windowOf(alarm).clearButtonPressed();
        else if (verb == u"snooze")
            windowOf(alarm).snoozeButtonPressed();
        else if (verb == u"end")
            m_controller.clearFromMenu(alarm);
        else
            ADD_FAILURE() << qPrintable(what);
        loop.runPending();
    }

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
        return join(titles) + (m_item.needsAttention ? "!" : "");
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
        player.setFile(QString::fromLatin1(values.title), {.duration = 60s});
        schedule(values);
    }
    for (const Step& step : scene.steps) {
        SCOPED_TRACE(step.what);
        perform(QString::fromLatin1(step.what));
        EXPECT_EQ(heard(), step.heard);
        EXPECT_EQ(seen(), step.seen);
    }
    EXPECT_EQ(kept(), scene.kept);
    EXPECT_EQ(join(m_told.filter(QRegularExpression(u"^(?!.* rings$)"_qs))), scene.told);
}

INSTANTIATE_TEST_SUITE_P(Scenes, SceneTest, ::testing::ValuesIn(scenes),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace

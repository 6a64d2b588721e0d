// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of an alarm that is edited: the real editor, clock, library and menu on virtual
// time.
#include "editor/DescriptionLabel.h"
#include "tests/menubar/MenuFixture.h"

#include <QMessageBox>

using namespace dorvane::testing;

namespace {

class EditingTest : public MenuFixture {
protected:
    // What happens at some moment of a scene.
    enum class Event {
        None,
        BeginsToRing, // half a second before it is due
        RingsHalfAMinute,
        IsPutOff,   // after ringing, for five minutes
        IsAnswered, // after ringing, with Clear
        IsDeleted,
        PassesTenMinutes,
    };

    void happen(Event event, const AlarmPtr& alarm) {
        if (event == Event::None)
            return;
        if (event == Event::IsDeleted)
            return m_controller.deleteAlarm(alarm);
        if (event == Event::PassesTenMinutes)
            return loop.advance(10min);
        const QDateTime due = alarm->time(instantNow(loop));
        loop.sleepMachine(std::chrono::milliseconds(loop.now().msecsTo(due)) - 1min);
        loop.advance(event == Event::BeginsToRing ? 59500ms : 90s);
        ASSERT_TRUE(alarm->isTriggered());
        if (event == Event::IsPutOff)
            m_controller.snoozeAlarm(alarm, alarm->snoozeTime());
        if (event == Event::IsAnswered)
            m_controller.clearAlarm(alarm);
    }

    // "Tea!30 | Tea 11-23 08:30+01": what is stored, with a mark if the menu lists it, and what
    // runs; "+" stands for values that only others know.
    std::string state() {
        std::string all;
        const auto stored = library.alarms().value_or(std::vector<AlarmPtr>());
        for (const AlarmPtr& alarm : stored)
            all += alarm->title().toStdString() + (alarm->isExisInActiveAlarmList() ? "!" : " ") +
                   std::to_string(alarm->ringWithinUnits()) +
                   (alarm->otherValues().isEmpty() ? " " : "+ ");
        all += "|";
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            all += " " + alarm->title().toStdString() + " " + brief(alarm->time(instantNow(loop))) +
                   (alarm->isTriggered() ? " rings" : "");
        return all;
    }
};

TEST_F(EditingTest, changesWhatWasChangedAndNothingElse) {
    const AlarmOf tea{.title = "Tea", .minutes = 30, .isListed = true};
    const AlarmOf daily{
        .title = "Bus", .kind = Alarm::Dated, .time = "11-23 09:00", .everyDay = true};
    const AlarmOf once{.title = "Bus", .kind = Alarm::Dated, .time = "11-23 09:00"};
    const AlarmOf late{.title = "Bus", .kind = Alarm::Dated, .time = "11-23 23:58"};
    const AlarmOf monday{.title = "Run",
                         .kind = Alarm::Weekly,
                         .time = "11-23 09:00",
                         .days = {Weekday::Monday, Weekday::Friday},
                         .forever = true};
    AlarmOf thisWeek = monday;
    thisWeek.forever = false;
    const auto never = Event::None;
    const struct {
        const char* name;
        AlarmOf alarm;
        bool runs;
        Event before, meanwhile; // of the opening of the editor, and while it is open
        const char* control;     // the one that is used, if any
        const char* state;
    } scenes[] = {
        {"stored", tea, false, never, never, "inTimeField=45", "Tea!45 |"},
        {"stored, renamed", tea, false, never, never, "titleBox=Egg", "Egg!30 |"},
        {"running", tea, true, never, never, "inTimeField=45", "Tea!45 | Tea 11-23 08:45+01"},
        {"running, renamed", tea, true, never, never, "titleBox=Egg",
         "Egg!30 | Egg 11-23 08:30+01"},
        {"rings", tea, true, Event::RingsHalfAMinute, never, "titleBox=Egg",
         "Egg!30 | Egg 11-23 09:00:30+01"},
        {"put off", tea, true, Event::IsPutOff, never, "titleBox=Egg",
         "Egg!30 | Egg 11-23 08:35+01"},
        {"put off, to another time", tea, true, Event::IsPutOff, never, "inTimeField=40",
         "Tea!40 | Tea 11-23 08:40+01"},
        {"to hours", tea, true, never, never, "inTimeTypePopUp=h", "Tea!30 | Tea 11-24 14:00+01"},
        {"to what has passed", tea, true, Event::PassesTenMinutes, never, "inTimeField=5",
         "Tea!5 | Tea 11-23 08:15+01"},
        {"rang its last meanwhile", tea, true, never, Event::IsAnswered, "",
         "Tea!30 | Tea 11-23 09:00:30+01"},
        {"every day, answered meanwhile", daily, true, never, Event::IsAnswered, "titleBox=Tram",
         "Tram 1 | Tram 11-24 09:00+01"},
        {"every day, rings", daily, true, Event::RingsHalfAMinute, never, "",
         "Bus 1 | Bus 11-24 09:00+01"},
        {"every day, put off", daily, true, Event::IsPutOff, never, "",
         "Bus 1 | Bus 11-23 09:05+01"},
        {"every day, to an hour that has passed", daily, true, never, never, "atTimePicker=7:00",
         "Bus 1 | Bus 11-24 07:00+01"},
        {"put off over midnight, to another time", late, true, Event::IsPutOff, never,
         "atTimePicker=23:59", "Bus 1 | Bus 11-23 23:59+01"},
        // Nothing that has passed is set before somebody has seen what becomes of it.
        {"once, rings", once, true, Event::RingsHalfAMinute, never, "",
         "Bus 0 | Bus 11-23 09:00+01 rings"},
        {"weekly, rings", monday, true, Event::RingsHalfAMinute, never, "",
         "Run 1 | Run 11-27 09:00+01"},
        {"weekly, begins to ring", monday, true, Event::BeginsToRing, never, "",
         "Run 1 | Run 11-27 09:00+01"},
        {"this week, answered meanwhile", thisWeek, true, never, Event::IsAnswered, "titleBox=Walk",
         "Walk 1 | Walk 11-27 09:00+01"},
        {"weekly, put off", monday, true, Event::IsPutOff, never, "titleBox=Walk",
         "Walk 1 | Walk 11-23 09:05+01"},
    };
    for (const auto& scene : scenes) {
        SCOPED_TRACE(scene.name);
        loop.setWall(at("11-23 08:00"));
        AlarmOf values = scene.alarm;
        values.snoozeTime = 5;
        values.sound = values.title;
        store(values);
        const AlarmPtr alarm = scene.runs ? values.alarm() : library.alarms()->front();
        if (scene.runs)
            m_controller.scheduleAlarm(alarm);
        happen(scene.before, alarm);
        AlarmSetController& window = editorOf(alarm);
        happen(scene.meanwhile, alarm);
        if (*scene.control)
            use(window, QString::fromLatin1(scene.control));
        set(window);
        EXPECT_EQ(state(), scene.state);
        if (values.kind == Alarm::Weekly && !values.forever) {
            EXPECT_EQ(m_clock.allAlarms().front()->weekdays(), WeekdaySet{Weekday::Friday});
        }
        EXPECT_EQ(openWindows() > 0, QByteArray(scene.state).endsWith("rings"));
        window.reject();
        for (const AlarmPtr& each : std::vector(m_clock.allAlarms()))
            m_controller.deleteAlarm(each);
        for (const QString& title : storedTitles())
            library.removeAlarm(title);
        loop.runPending();
    }
}

TEST_F(EditingTest, saysThatAnAlarmIsGoneAndMakesItAnew) {
    const AlarmPtr tea = timer("tea");
    m_controller.editAlarm(tea);
    m_controller.editAlarm(library.alarms()->front());
    const auto editors = openEditors();
    m_controller.deleteAlarm(tea);
    library.removeAlarm(u"tea"_qs);
    for (AlarmSetController* window : editors)
        EXPECT_THAT(window->findChild<DescriptionLabel*>()->toPlainText().toStdString(),
                    StartsWith("This alarm is no longer there. Set makes it anew.\n"));
    loop.advance(10min);
    for (AlarmSetController* window : editors)
        set(*window);
    EXPECT_EQ(state(), "tea 1 | tea 11-23 08:11+01");
}

TEST_F(EditingTest, leavesWhatIsAnothersAsItIs) {
    const auto editAndType = [this](const AlarmPtr& alarm, const char* typed) {
        AlarmSetController& window = editorOf(alarm);
        use(window, QString::fromLatin1(typed));
        set(window);
    };
    const AlarmPtr gym = AlarmOf{.title = "Gym", .minutes = 30, .isListed = true}.alarm();
    gym->setOtherValues({{u"later"_qs, 1}});
    library.put(*gym, instantNow(loop));
    store({.title = "Egg", .minutes = 7});
    const AlarmPtr script = AlarmOf{.title = "Gym", // whose title is the same by chance
                                    .kind = Alarm::Weekly,
                                    .time = "11-23 09:00",
                                    .days = {Weekday::Monday, Weekday::Friday},
                                    .snoozeTime = 5}
                                .alarm();
    m_controller.scheduleAlarm(script);
    happen(Event::IsAnswered, script);
    EXPECT_EQ(state(), "Gym!30+ Egg 7 | Gym 11-27 09:00+01") << "moved on";
    editAndType(script, "titleBox=Gym");
    EXPECT_EQ(m_clock.allAlarms().front()->identity(), script->identity()) << "on the bus";
    EXPECT_EQ(state(), "Gym!30+ Egg 7 | Gym 11-27 09:00+01");
    editAndType(m_clock.allAlarms().front(), "titleBox=Run");
    EXPECT_EQ(state(), "Gym!30+ Egg 7 Run 1 | Run 11-27 09:00+01");
    m_controller.deleteAlarm(m_clock.allAlarms().front());
    editAndType(library.alarms()->front(), "titleBox=Egg"); // which is there already
    EXPECT_EQ(state(), "Gym!30+ Egg!30+ Run 1 |");
}

TEST_F(EditingTest, aFullLibraryTakesChangesOfWhatItHolds) {
    std::vector<AlarmPtr> many;
    for (int i = 0; i < int(StoredAlarms::most); ++i)
        many.push_back(AlarmOf{.title = std::to_string(i).c_str(), .minutes = 3}.alarm());
    library.put(many, instantNow(loop));
    const AlarmPtr script = AlarmOf{.title = "Gym", .minutes = 9}.alarm();
    m_controller.scheduleAlarm(script);
    m_controller.saveFromMenu(script);
    EXPECT_EQ(windowsNamed<QMessageBox>("").size(), 1);
    for (QMessageBox* message : windowsNamed<QMessageBox>(""))
        message->close();
    m_controller.editAlarm(many.front());
    m_controller.editAlarm(script);
    for (AlarmSetController* window : openEditors()) {
        window->findChild<TitleBox*>()->lineEdit()->setText(u"Renamed"_qs);
        set(*window);
    }
    EXPECT_TRUE(openEditors().isEmpty());
    EXPECT_EQ(library.alarms()->front()->title(), u"Renamed"_qs);
    EXPECT_EQ(library.alarms()->size(), StoredAlarms::most);
}

TEST_F(EditingTest, savesWhatIsNotStoredAndListsWhatWasListed) {
    const AlarmPtr tea = timer("tea");
    library.removeAlarm(u"tea"_qs);
    m_controller.saveFromMenu(tea);
    EXPECT_EQ(state(), "tea!1 | tea 11-23 08:01+01");
    library.removeAlarm(u"tea"_qs); // its mark stays
    m_controller.saveFromMenu(tea);
    EXPECT_EQ(state(), "tea!1 | tea 11-23 08:01+01");
    store({.title = "tea", .minutes = 7}); // set anew
    EXPECT_EQ(state(), "tea!7 | tea 11-23 08:01+01");
}

TEST_F(EditingTest, aWeekdayAlarmMovesOnInTheLibraryToo) {
    const AlarmPtr run = schedule({.title = "run",
                                   .kind = Alarm::Weekly,
                                   .time = "11-23 08:01",
                                   .days = {Weekday::Monday, Weekday::Wednesday}});
    loop.advance(61s);
    windowOf(run).clearButtonPressed();
    const AlarmPtr stored = library.alarms()->front();
    EXPECT_EQ(brief(stored->time(instantNow(loop))), "11-25 08:01+01");
    EXPECT_EQ(stored->weekdays(), WeekdaySet{Weekday::Wednesday});
}

TEST_F(EditingTest, oneAlarmHasOneEditorWhichMayBeClosedTwice) {
    const AlarmPtr tea = timer("tea");
    m_controller.editAlarm(tea);
    m_controller.editAlarm(tea);
    m_controller.editAlarm(library.alarms()->front()); // the stored one, read anew each time
    m_controller.editAlarm(library.alarms()->front());
    ASSERT_EQ(openEditors().size(), 2);
    for (AlarmSetController* window : openEditors()) {
        window->reject();
        window->reject();
    }
    m_controller.editAlarm(tea);
    EXPECT_EQ(openEditors().size(), 1);
}

// On the 29th of March clocks go from two to three.
TEST_F(EditingTest, keepsTheTimeOfDayThatANightSkips) {
    const std::vector<const char*> kinds[] = {
        {"atTimeRadio", "everyDayCheck", "atTimePicker=2:30"},
        {"atAlarmTimeRadio", "sunCheck", "monCheck", "foreverCheck", "atAlarmTimePicker=2:30"}};
    for (const auto& controls : kinds) {
        loop.setWall(at("03-28 12:00"));
        AlarmSetController& window = editorOf(nullptr);
        use(window, u"titleBox=Tea"_qs);
        for (const char* control : controls)
            use(window, QString::fromLatin1(control));
        set(window);
        const AlarmPtr tea = m_clock.allAlarms().front();
        for (const char* due : {"03-29 03:30+02", "03-30 02:30+02"}) {
            EXPECT_EQ(brief(tea->time(instantNow(loop))), due);
            EXPECT_EQ(tea->timeOfDay(instantNow(loop)), QTime(2, 30));
            happen(Event::IsAnswered, tea);
        }
        const AlarmPtr again = m_controller.startStored(*library.alarms()->front());
        EXPECT_EQ(m_clock.allAlarms(), std::vector{again}) << "it is one";
        m_controller.deleteAlarm(again);
        loop.runPending();
    }
    const AlarmPtr stored = AlarmOf{.kind = Alarm::Dated, .time = "03-29 03:30"}.alarm();
    stored->setWishedTime(QTime(2, 30));
    EXPECT_EQ(archive.unarchive(archive.archivedData({stored})).alarms[0]->wishedTime(),
              QTime(2, 30));
}

TEST_F(EditingTest, rowsThatAreOutOfDateDoNothing) {
    const AlarmPtr tea = timer("tea");
    m_controller.saveFromMenu(tea);
    loop.advance(200ms);
    const std::vector<PanelMenuEntry> old = m_item.panelMenu;
    m_controller.removeAlarm(tea);
    store({.title = "tea", .minutes = 7});
    const std::string before = state();
    const std::function<void(const std::vector<PanelMenuEntry>&)> chooseAll =
        [&](const auto& rows) {
            for (const PanelMenuEntry& row : rows) {
                if (row.chosen && row.text != u"Create alarm..."_qs &&
                    !row.text.endsWith(u"min"_qs))
                    row.chosen();
                chooseAll(row.children);
            }
        };
    chooseAll(old);
    loop.runPending();
    EXPECT_EQ(state(), before);
    EXPECT_TRUE(openEditors().isEmpty());
}

TEST_F(EditingTest, skipDoesWhatRingingAndClearDoInSilence) {
    const AlarmPtr days = schedule({.title = "days",
                                    .kind = Alarm::Weekly,
                                    .time = "11-23 09:00",
                                    .days = {Weekday::Monday, Weekday::Thursday}});
    const AlarmPtr daily =
        schedule({.title = "daily", .kind = Alarm::Dated, .time = "11-23 09:30", .everyDay = true});
    for (const AlarmPtr& alarm : {days, daily})
        EXPECT_TRUE(m_controller.skipNext(alarm));
    loop.advance(3h);
    EXPECT_THAT(state(), StartsWith("days 0 daily 0 | daily 11-24 09:30+01 days 11-26 09:00+01"));
    EXPECT_EQ(m_told, QStringList());
    EXPECT_EQ(library.alarms()->front()->weekdays(), WeekdaySet{Weekday::Thursday});
    EXPECT_FALSE(m_controller.skipNext(days)) << "nothing comes after it";
}

TEST_F(EditingTest, whatWasDeletedLastComesBackAsItWas) {
    const AlarmPtr egg = schedule({.title = "egg", .minutes = 10});
    const AlarmPtr walk = schedule({.title = "walk", .minutes = 20, .repeats = true});
    schedule({.title = "late", .kind = Alarm::Dated, .time = "11-23 20:00"});
    const QString identity = walk->identity();
    loop.advance(1min);
    walk->snooze(2);
    using Result = LastDeletion::Result;
    m_controller.deleteAlarm(egg);
    m_controller.deleteAlarms(walk, library.alarms()->at(1));
    EXPECT_EQ(state(), "egg 10 late 0 | late 11-23 20:00+01");
    EXPECT_EQ(m_lastDeletion.undo(), Result::Back);
    EXPECT_EQ(state(), "egg 10 late 0 walk 20 | late 11-23 20:00+01 walk 11-23 08:22+01");
    EXPECT_EQ(walk->identity(), identity);
    EXPECT_EQ(m_lastDeletion.title(), std::nullopt) << "the last only, and once";

    m_controller.deleteAlarms(walk, library.alarms()->at(2));
    store({.title = "walk", .minutes = 5});
    loop.advance(30min);
    EXPECT_EQ(m_lastDeletion.undo(), Result::TitleTaken);
    EXPECT_EQ(state(), "egg 10 late 0 walk 5 | late 11-23 20:00+01 walk 11-23 08:40+01");
    const AlarmPtr tea = schedule({.title = "tea", .minutes = 3});
    m_controller.switchOff(tea);
    m_controller.switchOff(walk);
    EXPECT_EQ(m_lastDeletion.title(), std::nullopt) << "they are kept, and so is the other walk";
    EXPECT_EQ(state(), "egg 10 late 0 walk 5 tea!3 walk 2!20 | late 11-23 20:00+01");
    m_controller.scheduleAlarm(tea);
    m_controller.deleteAlarm(tea);
    loop.advance(4min);
    EXPECT_EQ(m_lastDeletion.undo(), Result::HasPassed);
    EXPECT_EQ(m_controller.duplicate(tea), u"tea 2"_qs);
    EXPECT_EQ(m_controller.duplicate(tea), u"tea 3"_qs);
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
// The road of every kind of alarm: made in the real editor, kept and rung by the real clock,
// answered in its window. Time, panel, sound and voices are virtual.
#include "editor/TitleBox.h"
#include "tests/menubar/MenuFixture.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

struct Kind {
    const char* name;
    // Controls to use, one after the other: a button is clicked, a field is typed into and left.
    std::vector<const char*> made;
    std::vector<std::string> rings;
    bool isPutOff = false; // by the first answer; the second clears it
    std::size_t left = 1;  // in the clock then
};

// What is set at eight o'clock on Monday, the 23rd of November.
const Kind kinds[] = {
    {.name = "InMinutesPutOff",
     .made = {"inTimeRadio", "inTimeField=20", "inTimeTypePopUp=m"},
     .rings = {"Mon 23 08:20", "Mon 23 08:27"},
     .isPutOff = true,
     .left = 0},
    {.name = "EveryTwoHours",
     .made = {"inTimeRadio", "inTimeField=2", "inTimeTypePopUp=h", "repeatCheck"},
     .rings = {"Mon 23 10:00", "Mon 23 12:00"}},
    {.name = "OnADatePutOff",
     .made = {"atTimeRadio", "atDatePicker=25", "atTimePicker=730"},
     .rings = {"Wed 25 07:30", "Wed 25 07:37"},
     .isPutOff = true,
     .left = 0},
    {.name = "EveryDay",
     .made = {"atTimeRadio", "atTimePicker=9:15", "everyDayCheck"},
     .rings = {"Mon 23 09:15", "Tue 24 09:15"}},
    {.name = "EveryTuesday",
     .made = {"atAlarmTimeRadio", "atAlarmTimePicker=7:30", "tueCheck", "foreverCheck"},
     .rings = {"Tue 24 07:30", "Tue 01 07:30"}},
    {.name = "ThisThursdayAndSunday",
     .made = {"atAlarmTimeRadio", "atAlarmTimePicker=6:45", "thuCheck", "sunCheck"},
     .rings = {"Thu 26 06:45", "Sun 29 06:45"},
     .left = 0},
};

// How the alarm comes into the clock: set in the editor, opened there again and set as it is, or
// started from its stored copy.
enum class Road { Made, OpenedAgain, Stored };

class EachKindTest : public MenuFixture,
                     public ::testing::WithParamInterface<std::tuple<Kind, Road>> {
protected:
    EachKindTest() {
        speech.whenVoicesKnown([] {});
        loop.runPending();
        store({.title = "Tea", .snoozeTime = 7, .sound = "/bell", .voice = "Zoe"});
    }

    AlarmSetController& openEditor(const AlarmPtr& alarm) {
        alarm ? m_controller.editAlarm(alarm) : m_controller.createAlarm();
        AlarmSetController& window = *openEditors().front();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }

    void make(const Kind& kind, Road road) {
        AlarmSetController& window = openEditor(nullptr);
        QTest::keyClick(window.findChild<TitleBox*>(), Qt::Key_Down); // Tea, with sound and voice
        for (const char* control : kind.made)
            use(window, QString::fromLatin1(control));
        set(window);
        ASSERT_EQ(m_clock.allAlarms().size(), 1U);
        if (road == Road::OpenedAgain)
            set(openEditor(m_clock.allAlarms().front()));
        if (road == Road::Stored) {
            m_controller.clearFromMenu(m_clock.allAlarms().front());
            m_controller.setAlarm(library.alarms()->front());
        }
    }

    // Sleeps until a minute before the alarm is due, and answers the window two seconds after;
    // tells when that was due, "Mon 23 08:20:00", or "silent".
    std::string ringAndAnswer(const char* button) {
        if (m_clock.allAlarms().empty())
            return "gone";
        const QDateTime due = m_clock.allAlarms().front()->time(instantNow(loop));
        loop.sleepMachine(std::chrono::milliseconds(loop.now().msecsTo(due)) - 1min);
        loop.advance(1min + 2s);
        const auto windows = windowsNamed("SnoozeWindowController");
        if (windows.size() != 1)
            return "silent";
        windows.front()->findChild<QPushButton*>(QLatin1String(button))->click();
        return QLocale::c().toString(loop.now().addSecs(-2), u"ddd dd HH:mm:ss"_qs).toStdString();
    }

    // Whole seconds after the test began to run, asleep not counted.
    std::vector<std::string> heard() const {
        std::vector<std::string> events;
        for (const std::string& event : trace.events())
            if (event.ends_with("says Tea") || event.ends_with("play"))
                events.push_back(event);
        return events;
    }
};

TEST_P(EachKindTest, ringsTwiceWithItsSoundAndVoice) {
    const auto& [kind, road] = GetParam();
    make(kind, road);
    const char* answers[] = {kind.isPutOff ? "snoozeButton" : "clearButton", "clearButton"};
    for (const std::size_t i : {0U, 1U})
        EXPECT_EQ(ringAndAnswer(answers[i]), kind.rings[i] + ":00");
    // The voice first, which takes a second, then the sound.
    EXPECT_EQ(heard(), (std::vector<std::string>{"59000 Zoe says Tea", "60000 /bell play",
                                                 "121000 Zoe says Tea", "122000 /bell play"}));
    EXPECT_EQ(m_clock.allAlarms().size(), kind.left);
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Kind, Road>>& test) {
    constexpr const char* roads[] = {"Made", "OpenedAgain", "Stored"};
    return std::string(std::get<0>(test.param).name) + roads[int(std::get<1>(test.param))];
}

INSTANTIATE_TEST_SUITE_P(Alarms, EachKindTest,
                         ::testing::Combine(::testing::ValuesIn(kinds),
                                            ::testing::Values(Road::Made, Road::OpenedAgain,
                                                              Road::Stored)),
                         nameOf);

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmSetController.h"

#include "editor/DatePicker.h"
#include "editor/IntervalField.h"
#include "editor/TimePicker.h"
#include "editor/TitleBox.h"
#include "platform/EscapedText.h"
#include "tests/editor/EditorFixture.h"

#include <QMessageBox>
#include <QRadioButton>

using namespace dorvane::testing;

namespace {

// A Wednesday evening.
class AlarmSetControllerTest : public ::testing::Test, public EditorFixture {
protected:
    AlarmSetControllerTest() : EditorFixture("11-18 20:05:20") {}

    [[nodiscard]] std::string remark() const {
        return find<QLabel>("atTimeRemark")->text().toStdString();
    }
    // Of the last alarm that was set.
    [[nodiscard]] std::string due() const { return brief(accepted.back()->time(instantNow(loop))); }
};

// How a date is read is tested in WrittenDateTest.
TEST_F(AlarmSetControllerTest, setsTheDateThatWasTypedAndNoOther) {
    const struct {
        const char* typed; // over the whole date, or where the keys before it lead to
        const char* date;  // what the sentence tells
        const char* shown; // once it is left
        bool isSet = true;
        const char* time = "=7:30";
    } cases[] = {
        {"=31.12.2026", "Dec 31", "31.12.2026"},
        {"=29.2.2028", "Feb 29 2028", "29.02.2028"},
        {"=24 dec", "Dec 24", "24.12.2026"},
        {"=wed", "Nov 25", "25.11.2026"}, // with that time, which is typed after it
        {"=wed", "Nov 18", "18.11.2026", true, "=21:00"},
        {"=31.2.2027", "", "31.2.2027", false},
        {"=31.2.27", "", "31.2.27", false},
        {"=31.12.2099", "", "31.12.2099", false},
        {"=noon", "", "noon", false},
    };
    find<DatePicker>("atDatePicker")->setTerritory(QLocale(QLocale::German));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        accepted.clear();
        open();
        press({"=Bus", "Alt+D", "Tab", c.typed, "Tab", c.time});
        EXPECT_EQ(find<DatePicker>("atDatePicker")->text(), QLatin1String(c.shown));
        EXPECT_THAT(sentence(), StartsWith(c.isSet ? std::string("On ") + c.date + " at "
                                                   : "That is not a date"));
        EXPECT_EQ(isEnabled("setButton"), c.isSet);
        EXPECT_EQ(remark(), c.isSet ? "" : "Not a date");
        press({"Return"});
        EXPECT_EQ(accepted.size(), c.isSet ? 1U : 0U);
    }
}

TEST_F(AlarmSetControllerTest, keepsEverySettingThroughControlsFormAlarmLibraryAndArchive) {
    const auto everything = [](AlarmOf alarm) {
        alarm.title = "Tea";
        alarm.time = alarm.kind == Alarm::Relative ? nullptr : "11-21 21:15";
        alarm.everyDay = alarm.repeats = alarm.fades = alarm.untilAnswered = alarm.softly = true;
        alarm.forever = alarm.kind == Alarm::Weekly;
        alarm.snoozeTime = 20;
        alarm.sound = "/bell.ogg";
        alarm.voice = "Zoe";
        return alarm.alarm();
    };
    // As they are stored, but for the moment from which it counts.
    const auto settingsOf = [this](const AlarmPtr& alarm) {
        alarm->setRunTime({});
        if (alarm->selRowNo() == Alarm::Relative)
            alarm->setTime({});
        QString settings;
        QDebug(&settings) << *format.parse(archive.archivedData({alarm}));
        return settings.toStdString();
    };
    const AlarmOf cases[] = {{.minutes = 7},
                             {.hours = 7},
                             {.kind = Alarm::Dated, .minutes = 1},
                             {.kind = Alarm::Weekly,
                              .minutes = 1,
                              .days = {Weekday::Monday, Weekday::Tuesday, Weekday::Saturday}}};
    for (const AlarmOf& values : cases) {
        const AlarmPtr all = everything(values);
        SCOPED_TRACE(all->selRowNo());
        open(all);
        click("setButton");
        const AlarmPtr stored = library.alarms()->at(0);
        EXPECT_EQ(settingsOf(accepted.back()), settingsOf(all));
        EXPECT_EQ(settingsOf(stored), settingsOf(all));
        stored->setTitle(u"Picked"_qs); // and picked from the list
        library.put(*stored, instantNow(loop));
        open();
        press({"Down", "Down"});
        click("setButton");
        EXPECT_EQ(settingsOf(accepted.back()), settingsOf(stored));
    }
}

TEST_F(AlarmSetControllerTest, setsNothingThatCannotBeReadOrHasNotBeenSeen) {
    open();
    press({"=Bus", "Alt+D", "Tab", "Tab", "=7:3", "Return"});
    EXPECT_TRUE(accepted.empty());
    EXPECT_FALSE(isEnabled("setButton"));
    EXPECT_EQ(remark(), "Not a time");
    press({"Alt+I"}); // another kind of alarm does not mind
    EXPECT_TRUE(isEnabled("setButton"));
    press({"Alt+D"});
    find<TimePicker>("atTimePicker")->selectAll();
    find<TimePicker>("atTimePicker")->setFocus();
    press({"=630", "Return"});
    EXPECT_TRUE(accepted.empty());
    EXPECT_EQ(remark(), "06:30 has passed");
    press({"Return"});
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(due(), "11-18 20:06+01");

    find<DatePicker>("atDatePicker")->setTerritory(QLocale(QLocale::German));
    open();
    press({"=Bus", "Alt+D", "Tab", "=5.11.2026", "Return"});
    EXPECT_EQ(remark(), "That day has passed");
    EXPECT_TRUE(editor.isVisible());
}

// A window that stays open over night.
TEST_F(AlarmSetControllerTest, holdsWhatIsSetAgainstThePresent) {
    open();
    press({"=Bus", "Alt+D", "Tab", "Tab", "=21:00"});
    loop.advance(11h);
    press({"Return"});
    EXPECT_TRUE(accepted.empty());
    EXPECT_EQ(remark(), "That day has passed");
    EXPECT_EQ(sentence(), "On Nov 19 at 21:00 alarm 'Bus' will be activated.");
    press({"Return"});
    EXPECT_EQ(due(), "11-19 21:00+01");
    open();
    press({"=Run", "Alt+D", "Alt+E", "Alt+W"}); // with a tick that is of another kind
    loop.advance(2min);
    press({"Return"});
    EXPECT_TRUE(editor.isVisible());
    press({"Return"});
    EXPECT_EQ(due(), "11-19 07:08+01");
}

TEST_F(AlarmSetControllerTest, keepsItsButtonsOnASmallScreenAndReturnForThem) {
    open();
    editor.resize(900, 400);
    QCoreApplication::processEvents();
    const auto isInSight = [this](const char* name) {
        const auto* widget = find<QWidget>(name);
        return QRect(QPoint(), editor.size())
                   .contains(QRect(widget->mapTo(&editor, QPoint()), widget->size())) &&
               widget->visibleRegion().contains(widget->rect().center());
    };
    EXPECT_FALSE(isInSight("speakNameCheck"));
    press({"Alt+L"});
    EXPECT_TRUE(isInSight("speakNameCheck"));
    EXPECT_TRUE(isInSight("setButton") && isInSight("cancelButton") &&
                isInSight("descriptionLabel"));

    press({"=Bus", "Alt+D", "Tab", "Tab", "Tab"});
    EXPECT_EQ(editor.focusWidget(), find<QWidget>("calendarButton"));
    press({"Return"});
    EXPECT_TRUE(find<QDialog>("GraphicalDateWindow")->isVisible());
    EXPECT_TRUE(accepted.empty());
}

TEST_F(AlarmSetControllerTest, choosesInTheSheets) {
    open();
    click("atTimeRadio");
    click("calendarButton");
    auto* date = find<QDialog>("GraphicalDateWindow");
    press({"Down", "Right"}, date); // a week and a day on
    QTest::keyClick(date->findChild<QWidget*>(u"clockFace"_qs), Qt::Key_PageUp);
    EXPECT_EQ(date->findChild<QLabel*>(u"chosenMoment"_qs)->text(),
              u"Thursday, 26 November 2026 at 21:06"_qs);
    date->findChild<QAbstractButton*>(u"setButton"_qs)->click();
    EXPECT_EQ(sentence(), "On Nov 26 at 21:06 alarm '' will be activated.");
    EXPECT_EQ(find<DatePicker>("atDatePicker")->chosenDate(), QDate(2026, 11, 26));

    click("atAlarmTimeRadio");
    click("monCheck");
    click("alarmButton");
    auto* time = find<QDialog>("GraphicalTimeWindow");
    press({"=0715", "Return"}, time);
    EXPECT_EQ(sentence(), "On Monday At 07:15 AM alarm '' will be activated.");
    click("alarmButton");
    press({"=1111", "Escape"}, time);
    EXPECT_EQ(sentence(), "On Monday At 07:15 AM alarm '' will be activated.");
    EXPECT_TRUE(editor.isVisible());
}

TEST_F(AlarmSetControllerTest, tellsWhatIsMissingAndStaysOpen) {
    open();
    press({"Alt+I", "Tab", "Delete", "Alt+P", "Alt+L", "Return"});
    auto* alert = editor.findChild<QMessageBox*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert->text(), u"Dorvane"_qs);
    EXPECT_EQ(alert->informativeText(),
              escapedText(u"Title must not be empty.\nAlarm time is not set.\n"
                          "Please select sound to play.\n"
                          "Please select voice to speak with.\n"_qs));
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons()[0]->text(), u"Continue"_qs);
    alert->buttons()[0]->click();
    EXPECT_TRUE(editor.isVisible());
    EXPECT_TRUE(accepted.empty() && storedTitles().isEmpty());
    press({"Escape"});
    EXPECT_FALSE(editor.isVisible());
}

TEST_F(AlarmSetControllerTest, reusesAndRemovesStoredAlarms) {
    store({.title = "Tea", .minutes = 3});
    store({.title = "Run", .minutes = 5});
    store({.title = "Bus", .minutes = 7});
    open();
    auto* titles = find<TitleBox>("titleBox");
    const auto shown = [&] {
        return (titles->title() + u' ' + find<IntervalField>("inTimeField")->text()).toStdString() +
               (isEnabled("removeAlarmButton") ? " removable" : "");
    };
    press({"=Tea", "Tab"});
    EXPECT_EQ(shown(), "Tea 1") << "a typed title is no pick, although it is stored";
    titles->setFocus();
    press({"Down", "Down"});
    EXPECT_EQ(shown(), "Run 5 removable");
    press({"=n"});
    EXPECT_EQ(shown(), "nRun 5");
    press({"Down", "Down"}); // Bus, the last one
    click("removeAlarmButton");
    EXPECT_EQ(shown(), "Run 5 removable");
    library.removeAlarm(u"Tea"_qs); // by another window
    click("removeAlarmButton");
    EXPECT_EQ(shown(), " 1");
    EXPECT_TRUE(storedTitles().isEmpty());
}

TEST_F(AlarmSetControllerTest, leavesWhatIsBeingTypedAloneWhenTheLibraryChanges) {
    store({.title = "Run", .minutes = 5});
    open();
    auto* edit = find<TitleBox>("titleBox")->lineEdit();
    press({"=Mee"});
    library.removeAlarm(u"Run"_qs);
    store({.title = "Tea", .minutes = 3});
    press({"=ting"});
    EXPECT_EQ(edit->text(), u"Meeting"_qs);
    edit->setSelection(1, 3);
    store({.title = "Bus", .minutes = 3});
    EXPECT_EQ(edit->selectedText(), u"eet"_qs);
    edit->undo();
    EXPECT_EQ(edit->text(), QString());
    press({"Down"});
    EXPECT_EQ(edit->text(), u"Tea"_qs);

    find<TitleBox>("titleBox")->showPopup();
    library.removeAlarm(u"Tea"_qs);
    EXPECT_EQ(find<TitleBox>("titleBox")->count(), 2) << "the list stays while it is open";
    find<TitleBox>("titleBox")->hidePopup();
    EXPECT_EQ(find<TitleBox>("titleBox")->count(), 1);
}

TEST_F(AlarmSetControllerTest, setsTheNextTimeThatClocksShow) {
    store({.title = "Tea", .kind = Alarm::Dated, .time = "10-01 07:00", .everyDay = true});
    store({.title = "Bus", .kind = Alarm::Dated, .time = "10-01 07:00"});
    const struct {
        std::vector<std::vector<const char*>> keys;
        const char* due;
    } cases[] = {
        {{{"=Tea", "Alt+D", "Tab", "Tab", "=7:00"}, {"Alt+E"}}, "11-19 07:00+01"},
        {{{"Down"}}, "11-19 07:00+01"},
        {{{"Down", "Down"}}, "11-19 07:00+01"},
    };
    for (const auto& [keys, expected] : cases) {
        open();
        for (const auto& part : keys)
            press(part);
        press({"Return"});
        ASSERT_FALSE(accepted.empty());
        EXPECT_EQ(due(), expected);
        accepted.clear();
    }
    loop.setWall(at("11-18 23:59:30")); // the default time is of tomorrow
    open();
    press({"=Run", "Alt+W"});
    EXPECT_EQ(find<QLabel>("atAlarmTimeRemark")->text(), u"Rings once, tomorrow"_qs);
    press({"Return"});
    EXPECT_EQ(due(), "11-19 00:00+01");
}

// Whatever has the focus. A button with a word on it does what that says.
TEST_F(AlarmSetControllerTest, returnSetsAndSpaceTicksEverywhere) {
    int walked = 0;
    for (const char* kind : {"inTimeRadio", "atTimeRadio", "atAlarmTimeRadio"})
        for (auto* widget : editor.findChildren<QWidget*>()) {
            open();
            find<TitleBox>("titleBox")->setTitle(u"Bus"_qs);
            click(kind);
            click("monCheck");
            auto* button = qobject_cast<QAbstractButton*>(widget);
            const bool isTicked = button && button->isCheckable();
            if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() ||
                !widget->isEnabled() || widget->window() != &editor || (button && !isTicked))
                continue;
            ++walked;
            widget->setFocus();
            if (isTicked) {
                const bool before = button->isChecked();
                QTest::keyClick(widget, Qt::Key_Space);
                EXPECT_TRUE(button->isChecked() != before || qobject_cast<QRadioButton*>(button));
                QTest::keyClick(widget, Qt::Key_Space);
            }
            accepted.clear();
            QTest::keyClick(widget, Qt::Key_Return);
            EXPECT_EQ(accepted.size(), 1U) << qPrintable(widget->objectName());
        }
    EXPECT_GT(walked, 30);
}

// Whatever can get the focus tells a screen reader what it is, and no two letters are the same.
TEST_F(AlarmSetControllerTest, canBeUsedWithoutSeeingOrPointing) {
    QString letters;
    for (const QWidget* widget : editor.findChildren<QWidget*>()) {
        if (widget->window() != &editor)
            continue;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const auto* label = qobject_cast<const QLabel*>(widget);
        const QString text = button ? button->text() : label ? label->text() : QString();
        letters += QKeySequence::mnemonic(text).toString().right(1);
        if (widget->focusPolicy() != Qt::NoFocus && !widget->objectName().startsWith(u"qt_"_qs)) {
            EXPECT_FALSE(widget->accessibleName().isEmpty() && text.isEmpty())
                << widget->metaObject()->className() << qPrintable(widget->objectName());
        }
    }
    EXPECT_EQ(letters.size(), QSet<QChar>(letters.begin(), letters.end()).size())
        << qPrintable(letters);
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmSetController.h"

#include "editor/DescriptionLabel.h"
#include "editor/IntervalField.h"
#include "editor/TimePicker.h"
#include "editor/TitleBox.h"
#include "sounds/PullDownPopUp.h"
#include "tests/editor/EditorFixture.h"
#include "tests/support/Dates.h"
#include "tests/support/LogCapture.h"

#include <QApplication>
#include <QClipboard>
#include <QDateEdit>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest/QTest>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace dorvane;
using namespace dorvane::testing;
using ::testing::ElementsAre;

namespace {

// A Wednesday evening.
class AlarmSetControllerTest : public ::testing::Test, public EditorFixture {
protected:
    AlarmSetControllerTest() : EditorFixture(at("2026-11-18 20:05:20")) {}

    void open(const AlarmPtr& alarm = nullptr) {
        editor.showWithAlarm(alarm);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    }

    // A name of a key as in "Tab", "Alt+W" or "Space", or '=' and a text to type.
    void press(std::initializer_list<const char*> keys, QWidget* window = nullptr) {
        for (const char* key : keys) {
            QWidget* focus = (window ? window : &editor)->focusWidget();
            ASSERT_NE(focus, nullptr) << key;
            if (*key == '=') {
                QTest::keyClicks(focus, QString::fromUtf8(key + 1));
            } else {
                const QKeyCombination combination =
                    QKeySequence::fromString(QString::fromLatin1(key))[0];
                QTest::keyClick(focus, combination.key(), combination.keyboardModifiers());
            }
            QCoreApplication::processEvents();
            // A button that is reached by its letter stays down for a moment.
            EXPECT_TRUE(QTest::qWaitFor([this] {
                const QList<QAbstractButton*> buttons = editor.findChildren<QAbstractButton*>();
                return std::none_of(buttons.begin(), buttons.end(),
                                    [](const QAbstractButton* button) { return button->isDown(); });
            }));
        }
    }

    [[nodiscard]] std::string sentence() const {
        return find<DescriptionLabel>("descriptionLabel")->toPlainText().toStdString();
    }
    [[nodiscard]] bool isEnabled(const char* name) const {
        return find<QWidget>(name)->isEnabled();
    }
    [[nodiscard]] std::string focused() const {
        const QWidget* focus = editor.focusWidget();
        return focus ? focus->objectName().toStdString() : "nothing";
    }
    void click(const char* name) { find<QAbstractButton>(name)->click(); }

    // Picks what the pull-down offers under that text, also in a submenu.
    void pick(const char* popUp, const QString& text) {
        auto* button = find<PullDownPopUp>(popUp);
        button->showPopup();
        loop.runPending(); // voices are listed when somebody asks
        QList<QAction*> items = button->menu().actions();
        for (QMenu* submenu : button->menu().findChildren<QMenu*>()) {
            Q_EMIT submenu->aboutToShow();
            items += submenu->actions();
        }
        for (QAction* item : items)
            if (item->text() == text)
                return button->menu().close(), item->trigger();
        ADD_FAILURE() << "not offered: " << qPrintable(text);
    }
};

TEST_F(AlarmSetControllerTest, makesARelativeAlarmByKeyboard) {
    open();
    press({"=Tea", "Alt+I", "Tab", "=15", "Tab", "Down", "Alt+R", "Alt+N", "Down", "Down"});
    EXPECT_EQ(sentence(), "Every 15 hour(s) alarm 'Tea' will be activated.");
    press({"Return"});
    EXPECT_FALSE(editor.isVisible());
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(accepted[0]->ringWithinUnits(), 15);
    EXPECT_FALSE(accepted[0]->isMinuteUnits());
    EXPECT_TRUE(accepted[0]->shouldRepeat());
    EXPECT_EQ(accepted[0]->snoozeTime(), 9);
    EXPECT_EQ(editedOne, nullptr);
    EXPECT_EQ(storedTitles(), QStringList{u"Tea"_qs});
}

TEST_F(AlarmSetControllerTest, makesADatedAlarmWhoseTimeIsTypedBeforeItsDay) {
    open();
    // The date has three sections to tab through.
    press({"=Bus", "Alt+D", "Tab", "Tab", "Tab", "Tab", "=0630", "Tab"});
    EXPECT_EQ(find<TimePicker>("atTimePicker")->text(), u"20:06"_qs); // 06:30 is past today
    press({"Shift+Tab", "Shift+Tab", "Shift+Tab", "Shift+Tab", "Up"});
    EXPECT_EQ(find<TimePicker>("atTimePicker")->text(), u"06:30"_qs);
    // The hidden date of the time picker is the one the sentence tells.
    EXPECT_EQ(sentence(), "On Nov 18 at 06:30 alarm 'Bus' will be activated.");
    press({"Return"});
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(text(accepted[0]->time()), "2026-11-19T06:30:00+01:00");
    EXPECT_TRUE(accepted[0]->isTimeWithDate());
}

TEST_F(AlarmSetControllerTest, makesAWeekdayAlarmWhoseTimeIsTypedBeforeItsDays) {
    open();
    press({"=Run", "Alt+W", "Tab", "=0630", "Tab"});
    EXPECT_EQ(sentence(), "At 20:06 PM alarm 'Run' will be activated.");
    EXPECT_FALSE(isEnabled("foreverCheck"));
    press({"Tab", "Space", "Tab", "Tab", "Space", "Alt+K"}); // Monday and Wednesday
    EXPECT_EQ(sentence(), "On every Monday Wednesday At 06:30 AM alarm 'Run' will be activated.");
    press({"Alt+S"});
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(text(accepted[0]->time()), "2026-11-23T06:30:00+01:00");
    EXPECT_EQ(accepted[0]->weekdays(), (WeekdaySet{Weekday::Monday, Weekday::Wednesday}));
}

TEST_F(AlarmSetControllerTest, choosesInTheSheets) {
    open();
    click("atTimeRadio");
    click("calendarButton");
    auto* date = find<QDialog>("GraphicalDateWindow");
    press({"Down", "Right"}, date); // a week and a day on
    QTest::keyClick(date->findChild<QWidget*>(u"clockFace"_qs), Qt::Key_PageUp);
    date->findChild<QAbstractButton*>(u"setButton"_qs)->click();
    EXPECT_EQ(sentence(), "On Nov 26 at 21:06 alarm '' will be activated.");
    EXPECT_EQ(find<QDateEdit>("atDatePicker")->date(), QDate(2026, 11, 26));

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
    EXPECT_EQ(alert->informativeText(), u"Title must not be empty.\nAlarm time is not set.\n"
                                        "Please select sound to play.\n"
                                        "Please select voice to speak with.\n"_qs);
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons()[0]->text(), u"Continue"_qs);
    alert->buttons()[0]->click();
    EXPECT_TRUE(editor.isVisible());
    EXPECT_TRUE(accepted.empty() && storedTitles().isEmpty());
    press({"Escape"});
    EXPECT_FALSE(editor.isVisible());
}

TEST_F(AlarmSetControllerTest, keepsARefusedIntervalInEditing) {
    open();
    auto* field = find<IntervalField>("inTimeField");
    for (const auto& [pasted, expected] :
         {std::pair{u"12a"_qs, u"1"_qs}, {u" 5"_qs, u"1"_qs}, {u"007"_qs, u"007"_qs}}) {
        field->setText(u"1"_qs);
        field->selectAll();
        QApplication::clipboard()->setText(pasted);
        field->paste();
        EXPECT_EQ(field->text(), expected) << qPrintable(pasted);
    }
    field->setFocus();
    press({"=0", "Tab", "Tab"}); // "0070"
    EXPECT_NE(focused(), "inTimeField");
    field->setFocus();
    field->clear();
    press({"=0", "Tab"});
    EXPECT_EQ(focused(), "inTimeField");
    find<QRadioButton>("atTimeRadio")->setFocus(Qt::MouseFocusReason);
    click("atTimeRadio");
    QCoreApplication::processEvents();
    EXPECT_EQ(focused(), "atTimeRadio"); // another kind of alarm ends the matter
}

TEST_F(AlarmSetControllerTest, editsARunningAlarmAndReplacesItsStoredCopy) {
    store(u"Tea"_qs, [](Alarm& alarm) { alarm.setRingWithinUnits(3); });
    store(u"Run"_qs);
    const AlarmPtr running = Alarm::initWithTime(loop, {}, u"Tea"_qs);
    running->setRingWithinUnits(9);
    running->setRunTime(at("2026-11-18 20:00"));
    open(running);
    EXPECT_EQ(find<IntervalField>("inTimeField")->text(), u"9"_qs); // not the stored one
    EXPECT_TRUE(isEnabled("removeAlarmButton"));
    click("setButton");
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(editedOne, running);
    EXPECT_EQ(accepted[0]->storedRunTime(), running->storedRunTime());
    EXPECT_EQ(storedTitles(), (QStringList{u"Tea"_qs, u"Run"_qs}));
    EXPECT_EQ(library.alarms()->at(0)->ringWithinUnits(), 9);
}

TEST_F(AlarmSetControllerTest, reusesAndRemovesStoredAlarms) {
    store(u"Tea"_qs, [](Alarm& alarm) { alarm.setRingWithinUnits(3); });
    store(u"Run"_qs, [](Alarm& alarm) { alarm.setRingWithinUnits(5); });
    store(u"Bus"_qs, [](Alarm& alarm) { alarm.setRingWithinUnits(7); });
    open();
    auto* titles = find<TitleBox>("titleBox");
    const auto interval = [this] { return find<IntervalField>("inTimeField")->text(); };

    // A typed title is no pick, although it is stored.
    press({"=Tea", "Tab"});
    EXPECT_EQ(interval(), u"1"_qs);
    EXPECT_FALSE(isEnabled("removeAlarmButton"));
    titles->setFocus();
    press({"Down", "Down"});
    EXPECT_EQ(titles->title(), u"Run"_qs);
    EXPECT_EQ(interval(), u"5"_qs);
    EXPECT_TRUE(isEnabled("removeAlarmButton"));
    press({"=n"});
    EXPECT_FALSE(isEnabled("removeAlarmButton"));

    press({"Down", "Down"}); // Bus, the last one
    click("removeAlarmButton");
    EXPECT_EQ(titles->title(), u"Run"_qs);
    EXPECT_EQ(interval(), u"5"_qs);
    library.removeAlarm(u"Tea"_qs); // by another window
    click("removeAlarmButton");
    EXPECT_TRUE(storedTitles().isEmpty());
    EXPECT_EQ(titles->title(), QString());
    EXPECT_EQ(interval(), u"1"_qs);
    EXPECT_FALSE(isEnabled("removeAlarmButton"));
}

TEST_F(AlarmSetControllerTest, keepsTheTimeOfAStoredAlarmOfThePast) {
    store(u"Run"_qs, [](Alarm& alarm) {
        alarm.setSelRowNo(Alarm::Weekly);
        alarm.setTime(at("2026-11-16 07:30"));
        alarm.setWeekdays({Weekday::Monday});
    });
    store(u"Bus"_qs, [](Alarm& alarm) {
        alarm.setSelRowNo(Alarm::Dated);
        alarm.setIsTimeWithDate(true);
        alarm.setTime(at("2026-10-01 21:00"));
    });
    open();
    press({"Down"});
    EXPECT_EQ(sentence(), "On Monday At 07:30 AM alarm 'Run' will be activated.");
    EXPECT_TRUE(isEnabled("atDatePicker")); // to no effect, and meant
    press({"Down"});
    EXPECT_EQ(sentence(), "On Nov 18 at 21:00 alarm 'Bus' will be activated.");
}

TEST_F(AlarmSetControllerTest, choosesSoundsAndVoices) {
    open();
    press({"=Tea", "Alt+P", "Alt+L"});
    EXPECT_FALSE(isEnabled("playButton"));
    QFile file(folder.filePath(u"Dorvane/Sounds/R&B.aiff"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    player.setFile(file.fileName(), {.duration = std::chrono::seconds(5)});
    pick("selectSoundButton", u"R&&B"_qs);
    pick("voiceNamePopUp", u"Tom && Tim"_qs);
    EXPECT_TRUE(isEnabled("playButton"));
    EXPECT_EQ(sentence(),
              "In 1 minute(s) alarm 'Tea' will be spoken by voice 'Tom & Tim' and sound "
              "'R&B' will be played.");
    EXPECT_EQ(find<PullDownPopUp>("selectSoundButton")->currentText(), u"R&B"_qs);
    find<PullDownPopUp>("selectSoundButton")->showPopup(); // rebuilt: the face stays first
    EXPECT_EQ(find<PullDownPopUp>("selectSoundButton")->menu().actions()[0]->text(), u"R&&B"_qs);
    EXPECT_FALSE(find<PullDownPopUp>("selectSoundButton")->menu().actions()[0]->isVisible());
    loop.advance(std::chrono::seconds(20));
    const std::string path = " " + file.fileName().toStdString();
    EXPECT_THAT(trace.events(),
                ElementsAre("0" + path + " play", "0 Tom & Tim says Tea", "1000 Tom & Tim said Tea",
                            "5000" + path + " finished", "5000" + path + " play",
                            "10000" + path + " finished", "10000" + path + " play",
                            "15000" + path + " finished"));
}

TEST_F(AlarmSetControllerTest, standsTitlesOfAnyKind) {
    open();
    const QSize size = editor.size();
    for (const QString& title : {QString(10000, u'W'), u"שלום \"<b>\" 🎉 & 'مرحبا' %1"_qs}) {
        const AlarmPtr alarm = Alarm::initWithTime(loop, {}, title);
        alarm->setIsMinuteUnits(true);
        alarm->setRingWithinUnits(525600);
        alarm->setSnoozeTime(25); // not offered
        open(alarm);
        EXPECT_EQ(editor.size(), size);
        EXPECT_EQ(sentence(),
                  "In 525600 minute(s) alarm '" + title.toStdString() + "' will be activated.");
        click("setButton");
        EXPECT_EQ(accepted.back()->title(), title);
        EXPECT_EQ(accepted.back()->snoozeTime(), 0);
    }
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/CustomModalWindowController.h"
#include "core/DateHelpers.h"
#include "sounds/PullDownPopUp.h"
#include "tests/breaks/BreakRig.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"
#include "widgets/FitToScreen.h"

#include <QDialog>
#include <QScreen>

using namespace dorvane::testing;

namespace {

class BreakWindowsTest : public ::testing::Test, protected BreakRig {
protected:
    BreakWindowsTest()
        : BreakRig([this](BreakRig&) {
            return std::make_shared<CustomModalWindowController>(
                loop, respito.window(),
                [](const QWidget& sheet) { return !sheet.isActiveWindow(); },
                CustomModalWindowController::Actions{
                    [this] { cycle.disableRespito(); }, [this] { respito.showWindow(); },
                    [this](bool isUnseen) { trace.add(isUnseen ? u"unseen"_qs : u"seen"_qs); }});
        }) {
        writeFile(m_tink);
    }

    template<typename Control>
    [[nodiscard]] Control* find(const char* name) const {
        return respito.window()->findChild<Control*>(QString::fromLatin1(name));
    }
    void click(const char* name) { find<QAbstractButton>(name)->click(); }
    [[nodiscard]] QString text(const char* field) const { return find<QLineEdit>(field)->text(); }
    [[nodiscard]] QVariant stored(const char* key) const {
        return defaults.value(QString::fromLatin1(key));
    }
    static QDialog* sheet() {
        return windowsNamed<QDialog>("CustomModalWindowController").value(0);
    }

    // The sheet goes with any of its buttons.
    static void clickInSheet(const char* name) {
        ASSERT_TRUE(sheet());
        sheet()->findChild<QAbstractButton*>(QString::fromLatin1(name))->click();
        EXPECT_FALSE(sheet());
    }

    const QString m_tink = path("Dorvane/Rings/Tink.aiff");
};

TEST_F(BreakWindowsTest, SlidersAndFieldsGoTogetherAndAreStored) {
    respito.showWindow();
    respito.window()->showMinimized();
    respito.showWindow();
    EXPECT_FALSE(respito.window()->isMinimized()) << "is not shown by showing it again";
    fitToScreen(*respito.window(), {200, 5000});
    EXPECT_LE(respito.window()->height(), respito.window()->screen()->availableSize().height());
    EXPECT_LT(respito.window()->minimumHeight(), 768 / 2) << "a small screen, two pixels to one";
    EXPECT_EQ(text("textBreakFreq"), u"25"_qs);
    find<QSlider>("breakDurationSlider")->setValue(7);
    EXPECT_EQ(text("textBreakDuration"), u"7"_qs);
    EXPECT_EQ(stored("PendixTakeABreakDuration"), 7);
    EXPECT_FALSE(stored("NextDate").isValid());

    click("startRespito");
    find<QSlider>("breakDurationSlider")->setValue(9);
    EXPECT_EQ(stored("NextDate").toDateTime(), loop.now().addSecs(540));
    click("stopRespito");
    EXPECT_FALSE(stored("NextDate").isValid());
}

// Nothing of a number holds while it is typed, and all of it however the field is left.
TEST_F(BreakWindowsTest, ANumberHoldsWhenItIsFinishedAndSaysWhatItIsTakenAs) {
    respito.showWindow();
    auto& field = *find<QLineEdit>("textBreakFreq");
    const auto leave = [&] { QTest::keyClick(&field, Qt::Key_Return); };
    const struct {
        const char* typed;
        const char* field;
        const char* hint;
        std::function<void()> leave;
    } table[] = {
        {"45", "45", "5 to 300", leave},
        {"10", "10", "5 to 300", [&] { find<QWidget>("cancelRespito")->setFocus(); }},
        {"4", "5", "not 4: at least 5", leave},
        {"40", "40", "5 to 300", [&] { respito.window()->close(); }},
        {"400", "300", "not 400: at most 300", leave},
        {"99999999999", "300", "not 9999: at most 300", leave},
        {"", "300", "5 to 300", leave},
        {"6a0", "60", "5 to 300", [&] { click("startRespito"); }}, // as by its letter
    };
    int before = 25;
    for (const auto& row : table) {
        SCOPED_TRACE(row.typed);
        respito.showWindow();
        QApplication::processEvents();
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Backspace);
        QTest::keyClicks(&field, QString::fromLatin1(row.typed));
        EXPECT_EQ(find<QSlider>("breakFreqSlider")->value(), before);
        row.leave();
        QApplication::processEvents();
        EXPECT_EQ(field.text(), QLatin1String(row.field));
        EXPECT_EQ(find<QLabel>("breakFreqHint")->text(), QLatin1String(row.hint));
        EXPECT_EQ(stored("PendixTakeABreakFrequency").toInt(), field.text().toInt());
        before = field.text().toInt();
        EXPECT_EQ(find<QSlider>("breakFreqSlider")->value(), before);
    }
    EXPECT_EQ(cycle.outlook().moment, loop.now().addSecs(3600)) << "started with what was typed";
    EXPECT_EQ(trace.events(), std::vector<std::string>{"0 beep"});
}

TEST_F(BreakWindowsTest, TheWindowSaysWhatIsNext) {
    respito.showWindow();
    const auto shown = [this] {
        return (find<QLabel>("nextBreakTimeLabel")->text() + find<QLabel>("nextBreakTime")->text())
            .toStdString();
    };
    const auto moment = [this](int minutes) {
        return timeString(loop.now().addSecs(minutes * 60)).toStdString();
    };
    EXPECT_EQ(shown(), "Next break at: Respito is Off");
    click("startRespito");
    EXPECT_FALSE(find<QWidget>("startRespito")->isEnabled());
    EXPECT_EQ(shown(), "Next break at: " + moment(25));
    loop.advance(25min);
    ASSERT_TRUE(sheet());
    EXPECT_EQ(shown(), "Break until: " + moment(5));
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    sheet()->close(); // is done, too
    ASSERT_FALSE(sheet());
    loop.advance(20min);
    presence.leave();
    loop.advance(5min);
    EXPECT_EQ(shown(), "Next break: when you are back");
    EXPECT_TRUE(find<QAbstractButton>("pauseWhileAway")->isChecked());
    click("pauseWhileAway");
    presence.comeBack();
    EXPECT_EQ(stored("PauseBreaksWhileAway"), false);
    clickInSheet("putOffBreak");
    EXPECT_EQ(shown(), "Next break at: " + moment(5));
    loop.advance(1min);
    click("skipRespito");
    EXPECT_EQ(shown(), "Next break at: " + moment(25));
    loop.advance(25min);
    clickInSheet("preferences");
    loop.advance(25min);
    clickInSheet("stopBreak");
    EXPECT_TRUE(find<QWidget>("startRespito")->isEnabled());
    EXPECT_FALSE(find<QWidget>("skipRespito")->isEnabled());
    EXPECT_EQ(shown(), "Next break at: Respito is Off");
}

// Where other windows may hide it, somebody is told until it is seen.
TEST_F(BreakWindowsTest, ASheetThatIsNotActiveAfterASecondCountsAsUnseen) {
    start();
    loop.advance(25min);
    QWidget other;
    other.show();
    other.activateWindow();
    QApplication::processEvents();
    loop.advance(1s);
    sheet()->activateWindow();
    QApplication::processEvents();
    other.activateWindow();
    QApplication::processEvents();
    loop.advance(1min);
    EXPECT_THAT(trace.events(), ElementsAre("1501000 unseen", "1501000 seen"));
    cycle.disableRespito();
}

TEST_F(BreakWindowsTest, EachSwitchHasItsSound) {
    respito.showWindow();
    EXPECT_FALSE(find<QWidget>("playButton")->isEnabled());
    auto* const button = find<PullDownPopUp>("selectSoundButton");
    const auto choose = [&](int group) {
        button->menu().actions()[group]->menu()->actions()[0]->trigger();
    };
    choose(1);
    choose(3);
    EXPECT_EQ(button->currentText(), u"Tink"_qs);
    EXPECT_EQ(stored("PendixTakeABreakSoundPath"), m_tink);
    click("breakDuration");
    EXPECT_EQ(button->currentText(), u"Basso"_qs);
    click("playButton");
    choose(3);
    EXPECT_EQ(stored("PendixTakeADurationSoundPath"), m_tink);
    loop.runPending();
    choose(3);
    loop.runPending();
    respito.window()->close();
    EXPECT_THAT(trace.events(),
                ElementsAre("0 record", EndsWith("Basso.aiff play"), EndsWith("Basso.aiff stop"),
                            EndsWith("Tink.aiff play"), EndsWith("Tink.aiff dropped"),
                            EndsWith("Tink.aiff play"), EndsWith("Tink.aiff dropped")));
}

TEST_F(BreakWindowsTest, TheBuiltInStartSoundOpensThePlayerForBothSwitches) {
    respito.showWindow();
    auto* const button = find<PullDownPopUp>("selectSoundButton");
    button->menu().actions().last()->trigger();
    EXPECT_EQ(button->currentText(), u"Respito"_qs);
    EXPECT_EQ(stored("PendixTakeABreakSoundPath"), u"Respito"_qs);
    click("breakDuration");
    click("playButton");
    loop.advance(500ms);
    click("playButton");
    EXPECT_TRUE(track.isWindowOpen());
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window != respito.window())
            window->close();
    loop.runPending();
    EXPECT_FALSE(track.isWindowOpen());
    click("playButton");
    EXPECT_THAT(trace.events(),
                ElementsAre(EndsWith("Respito.mp3 play"), EndsWith("Respito.mp3 dropped"),
                            EndsWith("Respito.mp3 play")));
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCycle.h"
#include "breaks/BreakFormatters.h"
#include "breaks/ClockBreaks.h"
#include "breaks/CustomModalWindowController.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "breaks/RespitoAudioPlayerController.h"
#include "firing/SoundRepeat.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "sounds/AudioStorageController.h"
#include "sounds/PullDownPopUp.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QDialog>

using namespace dorvane::testing;

namespace {

class BreakWindowsTest : public FakeDesktopTest {
protected:
    BreakWindowsTest() { writeFile(m_tink); }
    ~BreakWindowsTest() override { loop.runPending(); }

    template<typename Control>
    [[nodiscard]] Control* find(const char* name) const {
        return m_window.window()->findChild<Control*>(QString::fromLatin1(name));
    }
    void click(const char* name) { find<QAbstractButton>(name)->click(); }
    [[nodiscard]] QString text(const char* field) const { return find<QLineEdit>(field)->text(); }
    [[nodiscard]] QVariant stored(const char* key) const {
        return m_defaults.value(QString::fromLatin1(key));
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
    MemoryDefaults m_defaults;
    PropertyListCodec m_format;
    Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    SoundRepeat m_repeat{loop, player};
    AudioStorageController m_library{loop, user, {}, player, workspace};
    RespitoAudioPlayerController m_track{loop, player, m_bundle};
    PendixTakeABreakSettings m_settings{m_defaults, user, loop, notifications};
    ClockBreaks m_clock{loop, m_settings, m_defaults, player};
    BreakCycle m_cycle{
        {.runLoop = loop, .settings = m_settings, .player = player, .makeSheet = [this] {
             return std::make_shared<CustomModalWindowController>(
                 loop, m_window.window(),
                 CustomModalWindowController::Actions{[this] { m_cycle.disableRespito(); },
                                                      [this] { m_window.showWindow(); }});
         }}};
    PendixRespitoWindowsController m_window{
        {.runLoop = loop,
         .settings = m_settings,
         .cycle = m_cycle,
         .clock = m_clock,
         .defaults = m_defaults,
         .notifications = notifications,
         .bundle = m_bundle,
         .propertyLists = m_format,
         .player = player,
         .repeat = m_repeat,
         .library = m_library,
         .workspace = workspace,
         .audioPlayer = [this]() -> RespitoAudioPlayerController& { return m_track; },
         .showRecordingWindow = [this](const QWidget&) { trace.add(u"record"_qs); },
         .beep = [this] { trace.add(u"beep"_qs); }}};
};

TEST(BreakFormatterTest, TakesWhatCanBecomeANumberItAllows) {
    using enum BreakFormatter::Verdict;
    const BreakEveryFormatter every([] {}, nullptr);
    for (const char* text : {"", "5", "300", " 7"})
        EXPECT_EQ(every.verdictOn(QString::fromLatin1(text)), Accepted) << text;
    for (const char* text : {"4", "301", "4a", "a", "-5", "99999999999"})
        EXPECT_EQ(every.verdictOn(QString::fromLatin1(text)), Refused) << text;
    for (const char* text : {"12a", "5.5", "400x"})
        EXPECT_EQ(every.verdictOn(QString::fromLatin1(text)), RefusedWithBeep) << text;
    EXPECT_EQ(BreakDurationFormatter([] {}, nullptr).verdictOn(u"1"_qs), Refused);
    EXPECT_EQ(BreakDurationFormatter([] {}, nullptr).verdictOn(u"60"_qs), Accepted);
    EXPECT_EQ(BreakRepeatFormatter([] {}, nullptr).verdictOn(u"31"_qs), Refused);
}

TEST_F(BreakWindowsTest, SlidersAndFieldsGoTogetherAndAreStored) {
    m_window.showWindow();
    m_window.window()->showMinimized();
    m_window.showWindow();
    EXPECT_FALSE(m_window.window()->isMinimized()) << "is not shown by showing it again";
    EXPECT_EQ(text("textBreakFreq"), u"25"_qs);
    find<QSlider>("breakDurationSlider")->setValue(7);
    EXPECT_EQ(text("textBreakDuration"), u"7"_qs);
    EXPECT_EQ(stored("PendixTakeABreakDuration"), 7);
    EXPECT_FALSE(stored("NextDate").isValid());

    for (const char* typed : {"4", "60a1"}) {
        find<QLineEdit>("textBreakFreq")->clear();
        QTest::keyClicks(find<QLineEdit>("textBreakFreq"), QString::fromLatin1(typed));
    }
    EXPECT_EQ(trace.events(), std::vector<std::string>{"0 beep"});
    EXPECT_EQ(text("textBreakFreq"), u"60"_qs);
    EXPECT_EQ(find<QSlider>("breakFreqSlider")->value(), 60);
    EXPECT_EQ(stored("PendixTakeABreakFrequency"), 60);

    click("startRespito");
    find<QSlider>("breakDurationSlider")->setValue(9);
    EXPECT_EQ(stored("NextDate").toDateTime(), loop.now().addSecs(540));
    click("stopRespito");
    EXPECT_FALSE(stored("NextDate").isValid());
}

TEST_F(BreakWindowsTest, StartedFromTheWindowTheBreaksFollowEachOther) {
    m_window.showWindow();
    click("startRespito");
    EXPECT_FALSE(find<QWidget>("startRespito")->isEnabled());
    for (const char* left : {"05:00", "04:59"}) {
        loop.advance(25min);
        ASSERT_TRUE(sheet()) << left;
        EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
        EXPECT_EQ(sheet()->findChild<QLabel*>(u"showBreakTime"_qs)->text(),
                  u"Take a break for %1 mins"_qs.arg(QLatin1String(left)));
        loop.advance(70s);
        EXPECT_TRUE(
            sheet()->findChild<QLabel*>(u"showBreakTime"_qs)->text().contains(u"or 03:"_qs));
        sheet()->close(); // is done, too
        ASSERT_FALSE(sheet());
    }
    loop.advance(25min);
    clickInSheet("stopBreak");
    EXPECT_TRUE(find<QWidget>("startRespito")->isEnabled());
    EXPECT_FALSE(find<QWidget>("skipRespito")->isEnabled());
    loop.advance(1h);
    EXPECT_FALSE(sheet());
}

// Only the menu and the sheet stop the timer; the window's button stops what is to be seen.
TEST_F(BreakWindowsTest, StoppedInTheWindowTheTimerStillCalls) {
    m_window.enableRespito(); // before there is a window
    m_cycle.enableRespito();
    m_window.showWindow();
    click("stopRespito");
    EXPECT_EQ(stored("PendixRespitoStatus"), 0);
    EXPECT_EQ(find<QLabel>("nextBreakTime")->text(), u"Respito is Off"_qs);
    loop.advance(25min);
    clickInSheet("preferences");
    loop.advance(25min);
    EXPECT_TRUE(sheet());
    m_cycle.disableRespito();
}

TEST_F(BreakWindowsTest, EachSwitchHasItsSound) {
    m_window.showWindow();
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
    EXPECT_THAT(trace.events(),
                ElementsAre("0 record", EndsWith("Basso.aiff play"), EndsWith("Tink.aiff play"),
                            EndsWith("Tink.aiff play")));
}

TEST_F(BreakWindowsTest, TheBuiltInStartSoundOpensThePlayerForBothSwitches) {
    m_defaults.setValue(u"PendixTakeABreakSoundPath"_qs, u"Respito"_qs);
    m_window.showWindow();
    click("breakDuration");
    click("playButton");
    loop.advance(500ms);
    click("playButton");
    EXPECT_TRUE(m_track.isWindowOpen());
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window != m_window.window())
            window->close();
    loop.runPending();
    EXPECT_FALSE(m_track.isWindowOpen());
    click("playButton");
    EXPECT_THAT(trace.events(),
                ElementsAre(EndsWith("Respito.mp3 play"), EndsWith("Respito.mp3 dropped"),
                            EndsWith("Respito.mp3 play")));
}

} // namespace

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
#include "platform/linux/preferences/LibplistFormat.h"
#include "platform/UserFolders.h"
#include "sounds/AudioStorageController.h"
#include "sounds/PullDownPopUp.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QDialog>

using namespace dorvane::testing;

namespace {

class BreakWindowsTest : public ::testing::Test {
protected:
    BreakWindowsTest() {
        QDir().mkpath(QFileInfo(m_tink).path());
        QFile(m_tink).open(QIODevice::WriteOnly);
    }
    ~BreakWindowsTest() override { m_loop.runPending(); }

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
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == u"CustomModalWindowController"_qs && window->isVisible())
                return qobject_cast<QDialog*>(window);
        return nullptr;
    }

    // The sheet goes with any of its buttons.
    static void clickInSheet(const char* name) {
        ASSERT_TRUE(sheet());
        sheet()->findChild<QAbstractButton*>(QString::fromLatin1(name))->click();
        EXPECT_FALSE(sheet());
    }

    VirtualRunLoop m_loop{at("2026-11-23 08:00")};
    Trace m_trace{m_loop};
    QTemporaryDir m_folder;
    const QString m_tink = m_folder.filePath(u"Dorvane/Rings/Tink.aiff"_qs);
    UserFolders m_user{m_folder.path(), m_folder.path(), m_folder.path(), m_folder.path()};
    NotificationCenter m_notifications;
    MemoryDefaults m_defaults;
    LibplistFormat m_format;
    Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    FakeWorkspace m_workspace{m_trace};
    FakeSoundPlayer m_player{m_loop, m_trace};
    SoundRepeat m_repeat{m_loop, m_player};
    AudioStorageController m_library{m_loop, m_user, {}, m_player, m_workspace};
    RespitoAudioPlayerController m_track{m_loop, m_player, m_bundle};
    PendixTakeABreakSettings m_settings{m_defaults, m_user, m_loop, m_notifications};
    ClockBreaks m_clock{m_loop, m_settings, m_defaults, m_player};
    BreakCycle m_cycle{
        {.runLoop = m_loop, .settings = m_settings, .player = m_player, .makeSheet = [this] {
             return std::make_shared<CustomModalWindowController>(
                 m_loop, m_window.window(),
                 CustomModalWindowController::Actions{[this] { m_cycle.disableRespito(); },
                                                      [this] { m_window.showWindow(); }});
         }}};
    PendixRespitoWindowsController m_window{
        {.runLoop = m_loop,
         .settings = m_settings,
         .cycle = m_cycle,
         .clock = m_clock,
         .defaults = m_defaults,
         .notifications = m_notifications,
         .bundle = m_bundle,
         .propertyLists = m_format,
         .player = m_player,
         .repeat = m_repeat,
         .library = m_library,
         .workspace = m_workspace,
         .audioPlayer = [this]() -> RespitoAudioPlayerController& { return m_track; },
         .showRecordingWindow = [this](const QWidget&) { m_trace.add(u"record"_qs); },
         .beep = [this] { m_trace.add(u"beep"_qs); }}};
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
    EXPECT_EQ(text("textBreakFreq"), u"25"_qs);
    find<QSlider>("breakDurationSlider")->setValue(7);
    EXPECT_EQ(text("textBreakDuration"), u"7"_qs);
    EXPECT_EQ(stored("PendixTakeABreakDuration"), 7);
    EXPECT_FALSE(stored("NextDate").isValid());

    for (const char* typed : {"4", "60a1"}) {
        find<QLineEdit>("textBreakFreq")->clear();
        QTest::keyClicks(find<QLineEdit>("textBreakFreq"), QString::fromLatin1(typed));
    }
    EXPECT_EQ(m_trace.events(), std::vector<std::string>{"0 beep"});
    EXPECT_EQ(text("textBreakFreq"), u"60"_qs);
    EXPECT_EQ(find<QSlider>("breakFreqSlider")->value(), 60);
    EXPECT_EQ(stored("PendixTakeABreakFrequency"), 60);

    click("startRespito");
    find<QSlider>("breakDurationSlider")->setValue(9);
    EXPECT_EQ(stored("NextDate").toDateTime(), m_loop.now().addSecs(540));
    click("stopRespito");
    EXPECT_FALSE(stored("NextDate").isValid());
}

TEST_F(BreakWindowsTest, StartedFromTheWindowTheBreaksFollowEachOther) {
    m_window.showWindow();
    click("startRespito");
    EXPECT_FALSE(find<QWidget>("startRespito")->isEnabled());
    for (const char* left : {"05:00", "04:59"}) {
        m_loop.advance(25min);
        ASSERT_TRUE(sheet()) << left;
        EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
        EXPECT_EQ(sheet()->findChild<QLabel*>(u"showBreakTime"_qs)->text(),
                  u"Take a break for %1 mins"_qs.arg(QLatin1String(left)));
        sheet()->close(); // is done, too
        ASSERT_FALSE(sheet());
    }
    m_loop.advance(25min);
    clickInSheet("stopBreak");
    EXPECT_TRUE(find<QWidget>("startRespito")->isEnabled());
    EXPECT_FALSE(find<QWidget>("skipRespito")->isEnabled());
    m_loop.advance(1h);
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
    m_loop.advance(25min);
    clickInSheet("preferences");
    m_loop.advance(25min);
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
    m_loop.runPending();
    EXPECT_THAT(m_trace.events(),
                ElementsAre("0 record", EndsWith("Basso.aiff play"), EndsWith("Tink.aiff play"),
                            EndsWith("Tink.aiff play")));
}

TEST_F(BreakWindowsTest, TheBuiltInStartSoundOpensThePlayerForBothSwitches) {
    m_defaults.setValue(u"PendixTakeABreakSoundPath"_qs, u"Respito"_qs);
    m_window.showWindow();
    click("breakDuration");
    click("playButton");
    m_loop.advance(500ms);
    click("playButton");
    EXPECT_TRUE(m_track.isWindowOpen());
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window != m_window.window())
            window->close();
    m_loop.runPending();
    EXPECT_FALSE(m_track.isWindowOpen());
    click("playButton");
    EXPECT_THAT(m_trace.events(),
                ElementsAre(EndsWith("Respito.mp3 play"), EndsWith("Respito.mp3 dropped"),
                            EndsWith("Respito.mp3 play")));
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/EscapedText.h"
#include "sounds/SoundFileWell.h"
#include "tests/editor/EditorFixture.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QWindow>

using namespace dorvane::testing;

namespace {

class SoundChoiceTest : public ::testing::Test, public EditorFixture {
protected:
    SoundChoiceTest() : EditorFixture("11-18 20:05:20") { editor.showWithAlarm(nullptr); }

    void choose(const QString& name) { pick("selectSoundButton", name); }
    [[nodiscard]] std::string button() {
        return find<QAbstractButton>("playButton")->accessibleName().toStdString();
    }
    [[nodiscard]] QString hint() { return find<QLabel>("wellHint")->text(); }
    // What is heard, by the names of the sounds.
    [[nodiscard]] std::vector<std::string> heard() {
        std::vector<std::string> events = trace.events();
        const std::string path = storage.storedSoundsPath().toStdString() + "Sounds/";
        for (std::string& event : events)
            if (const auto at = event.find(path); at != std::string::npos)
                event.erase(at, path.size());
        trace.clear();
        return events;
    }
    [[nodiscard]] bool isQuiet() const {
        return std::none_of(player.sounds().begin(), player.sounds().end(),
                            [](const Sound* sound) { return sound->isPlaying(); });
    }
    static QWidget* recorderWindow() { return windowsNamed("ReminderController").value(0); }
};

TEST_F(SoundChoiceTest, triesOneSoundAtATimeAndStopsIt) {
    addSound("Gong", {.duration = 2s});
    addSound("Bell", {.duration = 40s});
    click("playSoundCheck");
    choose(u"Gong"_qs);
    EXPECT_EQ(button(), "Stop");
    loop.advance(3s);
    choose(u"Bell"_qs);
    loop.advance(1s);
    click("playButton");
    EXPECT_EQ(button(), "Preview");
    EXPECT_THAT(heard(), ElementsAre("0 Gong.aiff play", "2000 Gong.aiff finished",
                                     "2000 Gong.aiff play", "3000 Gong.aiff dropped",
                                     "3000 Bell.aiff play", "4000 Bell.aiff dropped"));

    click("playButton");
    loop.advance(1s);
    find<QSlider>("Volume")->setValue(128); // plays again, that its volume is heard
    EXPECT_EQ(find<QSlider>("Volume")->toolTip(), escapedText(u"Using volume  50%"_qs));
    EXPECT_FLOAT_EQ(player.sounds().back()->volume(), 128.0F / 255.0F);
    EXPECT_EQ(button(), "Stop");
    find<QSlider>("Volume")->setValue(0);
    EXPECT_FLOAT_EQ(player.sounds().back()->volume(), 1.0F);
    loop.advance(21s);
    EXPECT_EQ(button(), "Preview") << "after 20 seconds";
    EXPECT_TRUE(isQuiet());

    choose(u"Gong"_qs);
    loop.advance(7s);
    EXPECT_EQ(button(), "Preview") << "after three times";
    click("playButton");
    click("playSoundCheck");
    EXPECT_TRUE(isQuiet()) << "its button is disabled now";
    choose(u"Bell"_qs);
    editor.close();
    EXPECT_TRUE(isQuiet());
}

TEST_F(SoundChoiceTest, doesNotLetAnUnplayableFileBeChosenUnawares) {
    const LogCapture log;
    addSound("Broken", {.isPlayable = false});
    addSound("Gong", {.duration = 2s});
    click("playSoundCheck");
    for (const bool byChoosing : {true, false}) {
        byChoosing ? choose(u"Broken"_qs) : click("playButton");
        loop.runPending();
        EXPECT_EQ(hint(), u"“Broken” cannot be played. Choose another sound."_qs);
        EXPECT_EQ(find<QWidget>("selectSoundButton")->toolTip(),
                  escapedText(u"Broken (cannot be played)"_qs));
        EXPECT_EQ(button(), "Preview");
    }
    choose(u"Gong"_qs);
    EXPECT_EQ(hint(), u"Drop a sound file here to add it"_qs);
    EXPECT_EQ(find<QWidget>("selectSoundButton")->toolTip(), QString());
}

TEST_F(SoundChoiceTest, addsFilesWithoutChoosingThem) {
    QDir().mkpath(QDir::homePath() + u"/Music"_qs);
    writeFile(home.filePath(u"Gong.wav"_qs), "RIFF");
    click("chooseFileButton");
    auto* panel = editor.findChild<QFileDialog*>();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->windowTitle(), u"Choose audio file(s)"_qs);
    EXPECT_EQ(panel->directory().dirName(), u"Music"_qs);
    panel->setDirectory(home.path());
    panel->selectFile(home.filePath(u"Gong.wav"_qs));
    static_cast<QDialog*>(panel)->accept();
    const QString copy = path("share/Dorvane/Sounds/Gong.wav");
    EXPECT_TRUE(QTest::qWaitFor([this, &copy] { return storage.addedSounds().contains(copy); }));
    storage.stopLoading(); // the report is on its way then
    loop.runPending();
    EXPECT_EQ(hint(), u"Added “Gong” – choose it under User Sound Library."_qs);
    EXPECT_EQ(find<PullDownPopUp>("selectSoundButton")->currentText(), u"Select Sound"_qs);

    find<SoundFileWell>("soundWell")->click();
    EXPECT_EQ(trace.events().back(), "0 reveal " + storage.storedSoundsPath().toStdString());
}

TEST_F(SoundChoiceTest, keepsTheRecorderToItself) {
    const auto record = [this] { choose(u"Record Alarm Sound..."_qs); };
    record();
    QWidget* const window = recorderWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowHandle()->transientParent(), editor.windowHandle());
    record();
    EXPECT_EQ(recorderWindow(), window) << "the same";

    for (const char* title : {"Tea / coffee", "Bus"}) {
        window->findChild<QLineEdit*>(u"reminderTitle"_qs)->setText(QString::fromLatin1(title));
        window->findChild<QAbstractButton*>(u"recordButton"_qs)->click();
        window->findChild<QAbstractButton*>(u"stopButton"_qs)->click();
        loop.runPending();
    }
    const QString chosen = u"Tea / coffee"_qs;
    auto* list = window->findChild<QComboBox*>(u"comboBox"_qs);
    list->setCurrentIndex(list->findText(chosen));
    window->findChild<QAbstractButton*>(u"okButton"_qs)->click();
    EXPECT_EQ(recorderWindow(), nullptr);
    EXPECT_EQ(offered("selectSoundButton").at(3)->text(), chosen);
    EXPECT_EQ(hint(), u"“%1” is the first under Record Sound."_qs.arg(chosen));
    record();
    choose(u"Tea / coffee"_qs);
    EXPECT_EQ(find<PullDownPopUp>("selectSoundButton")->currentText(), u"Tea / coffee"_qs);
    editor.close();
    EXPECT_EQ(recorderWindow(), nullptr) << "closes with the editor";
    loop.runPending();
}

TEST_F(SoundChoiceTest, playsTheDefaultSoundAndOffersWhatIsStored) {
    defaultSound = u"/Ping.aiff"_qs;
    store({.title = "Tea",
           .minutes = 3,
           .snoozeTime = 8,
           .sound = "/nowhere/Gong.wav",
           .voice = "Nobody"});
    open();
    EXPECT_EQ(sentence(), "In 1 minute(s) alarm '' will be played with sound 'Ping'.");
    press({"Down"});
    loop.runPending();
    EXPECT_EQ(find<QWidget>("voiceNamePopUp")->toolTip(), escapedText(u"Nobody (missing)"_qs));
    EXPECT_EQ(find<QWidget>("selectSoundButton")->toolTip(), escapedText(u"Gong (missing)"_qs));
    press({"Return"});
    EXPECT_EQ(accepted.back()->snoozeTime(), 8);
    open();
    EXPECT_EQ(find<QComboBox>("snoozeTimePopUp")->findText(u"8"_qs), -1);
}

TEST_F(SoundChoiceTest, choosesSoundsAndVoices) {
    speech.voices = {u"Anna"_qs, u"Tim & Co"_qs, u"Tom"_qs};
    open();
    press({"=Tea", "Alt+P", "Alt+L"});
    EXPECT_FALSE(isEnabled("playButton"));
    const std::string path = " " + addSound("R&B", {.duration = 5s}).toStdString();
    pick("selectSoundButton", u"R&&B"_qs);
    EXPECT_EQ(offered("voiceNamePopUp").size(), 4) << "its face, and each voice once";
    find<PullDownPopUp>("voiceNamePopUp")->showPopup();
    QMenu& voices = find<PullDownPopUp>("voiceNamePopUp")->menu();
    QTest::keyClicks(&voices, u"to"_qs);
    EXPECT_EQ(voices.activeAction()->text(), u"Tom"_qs) << "not the first with that letter";
    QKeyEvent afterAPause(QEvent::KeyPress, Qt::Key_T, {}, u"t"_qs);
    afterAPause.setTimestamp(5000);
    QApplication::sendEvent(&voices, &afterAPause);
    QTest::keyClick(&voices, Qt::Key_Return);
    EXPECT_TRUE(isEnabled("playButton"));
    EXPECT_EQ(sentence(), "In 1 minute(s) alarm 'Tea' will be spoken by voice 'Tim & Co' and sound "
                          "'R&B' will be played.");
    EXPECT_EQ(find<PullDownPopUp>("selectSoundButton")->currentText(), u"R&B"_qs);
    const QAction* face = offered("selectSoundButton").front(); // rebuilt: the face stays first
    EXPECT_EQ(face->text(), u"R&&B"_qs);
    EXPECT_FALSE(face->isVisible());
    loop.advance(500ms);
    click("playButton");
    loop.advance(20s);
    EXPECT_THAT(trace.events(),
                ElementsAre("0" + path + " play", "0" + path + " dropped", "0 Tim & Co says Tea",
                            "500" + path + " volume 1.00", "500 Tim & Co breaks off Tea",
                            "500" + path + " play", "5500" + path + " finished"));
}

} // namespace

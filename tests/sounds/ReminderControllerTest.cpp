// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderController.h"

#include "platform/Bundle.h"
#include "sounds/ReminderStrings.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"

#include <QMessageBox>

using namespace dorvane::testing;

namespace {

// The real window with a recorder and sounds that only take time.
class ReminderControllerTest : public FakeDesktopTest {
protected:
    ~ReminderControllerTest() override {
        if (QWidget* const open = window())
            open->close();
        loop.runPending();
    }

    void open() {
        ReminderController::create({loop, notifications, recorder, player, workspace, m_bundle,
                                    user,
                                    [](const QString& path) { return path.endsWith(u".aiff"_qs); },
                                    [this](const QString& path) { return m_users.value(path); }})
            ->show();
    }
    static QWidget* window() { return windowsNamed("ReminderController").value(0); }
    template<typename Widget>
    static Widget& control(const char* name) {
        return *window()->findChild<Widget*>(QString::fromLatin1(name));
    }
    static QAbstractButton& button(const char* name) { return control<QAbstractButton>(name); }
    static QComboBox& comboBox() { return control<QComboBox>("comboBox"); }

    void add(const QString& name) { writeFile(m_folder + u'/' + name); }
    [[nodiscard]] QStringList files() const { return QDir(m_folder).entryList(QDir::Files); }

    void record(const QString& title) {
        control<QLineEdit>("reminderTitle").setText(title);
        button("recordButton").click();
    }
    // What the window asks, and the answer to it; nothing where it asks nothing.
    static QString asks(const char* answer) {
        auto* const sheet = window()->findChild<QMessageBox*>();
        if (!sheet)
            return {};
        QString text = sheet->text().replace(u"\n\n"_qs, u" "_qs);
        for (QAbstractButton* button : sheet->buttons())
            if (button->text().remove(u'&') == QLatin1String(answer))
                button->click();
        QApplication::sendPostedEvents(sheet, QEvent::DeferredDelete);
        return text;
    }
    // The controls that can be used.
    static std::string enabled() {
        std::string names;
        for (const char* name : {"reminderTitle", "recordButton", "playButton", "deleteButton",
                                 "stopButton", "cancelButton", "okButton", "comboBox"})
            if (control<QWidget>(name).isEnabled())
                names += std::string(names.empty() ? "" : " ") + name;
        return names;
    }

    Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    QMap<QString, QStringList> m_users;
    const QString m_folder = ReminderStrings::soundDirectory(user);
};

TEST_F(ReminderControllerTest, recordingStopsAfterTenSecondsAndStandsFirst) {
    add(u"old.aiff"_qs);
    add(u"notes.txt"_qs);
    add(u"half.aiff.part"_qs);
    open();
    EXPECT_EQ(comboBox().count(), 1);
    EXPECT_FALSE(QFileInfo(m_folder).permissions() & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_EQ(enabled(), "reminderTitle okButton comboBox");
    record(u"Tea  / coffee"_qs);
    loop.advance(9'999ms);
    EXPECT_EQ(enabled(), "recordButton stopButton cancelButton");
    loop.advance(1ms);
    EXPECT_EQ(enabled(), "reminderTitle recordButton playButton deleteButton okButton comboBox");
    EXPECT_EQ(window()->focusWidget(), &button("playButton")) << "Return once more records nothing";
    EXPECT_EQ(comboBox().currentIndex(), 0);
    EXPECT_EQ(comboBox().currentText(), u"Tea / coffee"_qs);
    comboBox().showPopup(); // read again from the file's name
    comboBox().hidePopup();
    EXPECT_EQ(comboBox().currentText(), u"Tea / coffee"_qs);
    EXPECT_THAT(
        trace.events(),
        ElementsAre("0 record " + m_folder.toStdString() + "/Tea  %2F coffee.aiff", "10000 stop"));
}

TEST_F(ReminderControllerTest, recordingThatIsCancelledClosedOrBrokenLeavesTheWindowIdle) {
    open();
    const LogCapture log;
    const auto& message = control<QLabel>("messageLabel");
    record(u"a"_qs);
    loop.advance(1s);
    button("cancelButton").click();
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    record(u"a"_qs);
    recorder.end(AudioError{u"Failed to read AU: 5"_qs, 5, u"There is no microphone."_qs});
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    EXPECT_EQ(message.text(), u"There is no microphone."_qs);
    EXPECT_TRUE(log.messages().contains(
        u"dorvane.sounds: cannot record: Failed to read AU: 5 - There is no microphone."_qs));

    ASSERT_TRUE(recorder.record(u"/elsewhere"_qs, [](const auto&) {}));
    record(u"a"_qs);
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    EXPECT_TRUE(message.text().contains(u"another window"_qs)) << "says why";
    recorder.end({});

    record(u"kept"_qs);
    writeFile(m_folder + u"/kept.aiff"_qs);
    recorder.end(AudioError{u"Failed to read AU: 5"_qs, 5, u"The microphone has gone."_qs, true});
    EXPECT_EQ(message.text(), u"The microphone has gone. What was heard before is kept."_qs);
    EXPECT_EQ(comboBox().currentText(), u"kept"_qs);
    QFile::remove(m_folder + u"/kept.aiff"_qs);

    record(u"a"_qs);
    EXPECT_EQ(message.text(), QString());
    loop.advance(1s);
    window()->close();
    loop.advance(20s);
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(trace.events().back(), "2000 cancel");
}

TEST_F(ReminderControllerTest, playingShowsAndStopsAndGoesWithTheChoiceAndTheWindow) {
    add(u"song.aiff"_qs);
    const std::string song = m_folder.toStdString() + "/song.aiff";
    const LogCapture log;
    open();
    comboBox().setCurrentIndex(0);
    loop.runPending();
    QTest::keyClick(&button("playButton"), Qt::Key_Return);
    EXPECT_EQ(button("playButton").accessibleName(), u"Stop playing"_qs);
    comboBox().showPopup(); // a look at the list stops nothing
    loop.runPending();
    comboBox().hidePopup();
    loop.advance(1s);
    EXPECT_EQ(button("playButton").accessibleName(), u"Play"_qs);
    button("playButton").click();
    loop.advance(500ms);
    button("playButton").click();
    loop.advance(500ms);
    player.hasServer = false;
    button("playButton").click();
    EXPECT_EQ(button("playButton").accessibleName(), u"Play"_qs);
    player.hasServer = true;
    button("playButton").click();
    window()->close();
    loop.runPending();
    EXPECT_THAT(trace.events(), ElementsAre("0 " + song + " play", "1000 " + song + " finished",
                                            "1000 " + song + " play", "1500 " + song + " stop",
                                            "2000 " + song + " refused", "2000 " + song + " play",
                                            "2000 " + song + " dropped"));
    EXPECT_TRUE(player.sounds().empty());
}

TEST_F(ReminderControllerTest, typingCompletesAndChooses) {
    for (const char* name : {"Tea.aiff", "Bus.aiff", "Butter.aiff"})
        add(QString::fromLatin1(name));
    open();
    const QString firstWithB = comboBox().itemText(
        comboBox().findText(u"B"_qs, Qt::MatchStartsWith | Qt::MatchCaseSensitive));
    struct {
        const char* keys; // '<' for Backspace
        QString text;
        bool isChosen;
    } const steps[] = {
        {"T", u"Tea"_qs, true},      {"<", u"T"_qs, false},      {"e", u"Tea"_qs, true},
        {"x", u"Tex"_qs, false},     {"<<<", QString(), false},  {"B", firstWithB, true},
        {"utt", u"Butter"_qs, true}, {"er", u"Butter"_qs, true}, {"<<<<<<b", u"b"_qs, false},
    };
    for (const auto& [keys, text, isChosen] : steps) {
        for (const char* key = keys; *key; ++key) {
            if (*key == '<')
                QTest::keyClick(comboBox().lineEdit(), Qt::Key_Backspace);
            else
                QTest::keyClick(comboBox().lineEdit(), *key);
        }
        loop.runPending();
        EXPECT_EQ(comboBox().currentText(), text) << keys;
        EXPECT_EQ(comboBox().currentIndex() >= 0, isChosen) << keys;
        EXPECT_EQ(button("playButton").isEnabled(), isChosen) << keys;
    }
}

TEST_F(ReminderControllerTest, whatSomethingPlaysIsReplacedAndDeletedOnlyWhenThatWasAsked) {
    add(u"Tea.aiff"_qs);
    const QString tea = m_folder + u"/Tea.aiff"_qs;
    m_users[tea] = QStringList{u"the alarm “Breakfast”"_qs, u"the break reminder"_qs};
    open();
    record(u"Tea"_qs);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(asks("Cancel"), u"Record “Tea”? The recording of that name is replaced. It is played "
                              "by the alarm “Breakfast” and the break reminder."_qs);
    EXPECT_FALSE(recorder.isRecording());
    record(u"Tea"_qs);
    asks("Record");
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(enabled(), "recordButton stopButton cancelButton");
    button("stopButton").click();
    EXPECT_EQ(enabled(), "") << "while it is being saved";
    EXPECT_NE(window()->focusWidget(), &button("folderButton"))
        << "which another Return would open";
    EXPECT_EQ(control<QLabel>("messageLabel").text(), u"Saving…"_qs);
    loop.runPending();
    EXPECT_EQ(control<QLabel>("messageLabel").text(), QString());

    button("deleteButton").click();
    EXPECT_TRUE(asks("Cancel").startsWith(u"Delete “Tea”? It is played by the alarm"_qs));
    EXPECT_EQ(files(), QStringList{u"Tea.aiff"_qs});
    button("deleteButton").click();
    asks("Delete");
    EXPECT_EQ(files(), QStringList());
}

// Made longest ago, whatever the folder lists first; and what something plays never goes.
TEST_F(ReminderControllerTest, sixteenthRecordingNamesTheOldestThatNothingPlaysAndDeletesIt) {
    for (int i = 1; i <= 15; ++i) {
        const QString path = m_folder + u"/%1.aiff"_qs.arg(i);
        writeFile(path);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(at("11-20 07:30").addSecs(i * 7 % 15), QFileDevice::FileModificationTime);
    }
    m_users[m_folder + u"/15.aiff"_qs] = QStringList{u"the alarm “Breakfast”"_qs};
    open();
    record(u"13"_qs);
    EXPECT_EQ(asks("Record"), QString()) << "it takes its own place";
    button("stopButton").click();
    loop.runPending();
    for (const char* goes : {"11", "9"}) { // 15 is older, and played; 13 is new by now
        const QString oldest = QString::fromLatin1(goes);
        record(u"new "_qs + oldest);
        EXPECT_TRUE(asks("Record").contains(u"nothing plays, “%1”, is deleted"_qs.arg(oldest)));
        EXPECT_EQ(files().size(), 15) << "not before the new one is made";
        button("stopButton").click();
        loop.runPending();
        EXPECT_FALSE(files().contains(oldest + u".aiff"_qs));
        EXPECT_EQ(comboBox().itemText(0), u"new "_qs + oldest);
    }
    EXPECT_EQ(files().size(), 15);
    EXPECT_TRUE(files().contains(u"15.aiff"_qs));
}

} // namespace

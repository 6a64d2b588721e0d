// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderController.h"

#include "platform/Bundle.h"
#include "platform/NotificationCenter.h"
#include "platform/Workspace.h"
#include "sounds/ReminderStrings.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeAudioRecorder.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/LogCapture.h"
#include "tests/support/VirtualRunLoop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

// The real window with a recorder and sounds that only take time.
class ReminderControllerTest : public ::testing::Test, protected Workspace {
protected:
    ReminderControllerTest() {
        m_user.caches = m_caches.path();
        m_folder = ReminderStrings::soundDirectory(m_user);
    }
    ~ReminderControllerTest() override {
        if (QWidget* const open = window())
            open->close();
        m_loop.runPending();
    }

    void openUrl(const QUrl&) override {}
    void reveal(const QString& path) override { m_trace.add(QStringLiteral("reveal ") + path); }
    [[nodiscard]] QString typeOfFile(const QString&) const override { return {}; }

    void open() {
        const LogCapture platformNotes; // of the offscreen platform
        ReminderController::create(
            {m_loop, m_center, m_recorder, m_player, *this, m_bundle, m_user,
             [](const QString& path) { return path.endsWith(QStringLiteral(".aiff")); }})
            ->show();
    }
    static QWidget* window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QStringLiteral("ReminderController"))
                return widget;
        return nullptr;
    }
    template<typename Widget>
    static Widget& control(const char* name) {
        return *window()->findChild<Widget*>(QString::fromLatin1(name));
    }
    static QAbstractButton& button(const char* name) { return control<QAbstractButton>(name); }
    static QComboBox& comboBox() { return control<QComboBox>("comboBox"); }

    void add(const QString& name) {
        QFile file(m_folder + QLatin1Char('/') + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    [[nodiscard]] QStringList files() const { return QDir(m_folder).entryList(QDir::Files); }

    void record(const QString& title) {
        control<QLineEdit>("reminderTitle").setText(title);
        button("recordButton").click();
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

    QTemporaryDir m_caches;
    UserFolders m_user;
    QString m_folder;
    Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    NotificationCenter m_center;
    VirtualRunLoop m_loop{at("2026-11-24 07:30")};
    Trace m_trace{m_loop};
    FakeSoundPlayer m_player{m_loop, m_trace};
    FakeAudioRecorder m_recorder{m_loop, m_trace};
};

TEST_F(ReminderControllerTest, recordingStopsAfterTenSecondsAndStandsFirst) {
    add(QStringLiteral("old.aiff"));
    add(QStringLiteral("notes.txt"));
    add(QStringLiteral("half.aiff.part"));
    open();
    EXPECT_EQ(comboBox().count(), 1);
    EXPECT_EQ(enabled(), "reminderTitle okButton comboBox");
    record(QStringLiteral("Tea  / coffee"));
    m_loop.advance(9'999ms);
    EXPECT_EQ(enabled(), "recordButton stopButton cancelButton");
    m_loop.advance(1ms);
    EXPECT_EQ(enabled(), "reminderTitle recordButton playButton deleteButton okButton comboBox");
    EXPECT_EQ(comboBox().currentIndex(), 0);
    EXPECT_EQ(comboBox().currentText(), QStringLiteral("Tea / coffee"));
    comboBox().showPopup(); // read again from the file's name
    comboBox().hidePopup();
    EXPECT_EQ(comboBox().currentText(), QStringLiteral("Tea / coffee"));
    EXPECT_THAT(
        m_trace.events(),
        ElementsAre("0 record " + m_folder.toStdString() + "/Tea  %2F coffee.aiff", "10000 stop"));
}

TEST_F(ReminderControllerTest, recordingThatIsCancelledClosedOrBrokenLeavesTheWindowIdle) {
    open();
    const LogCapture log;
    const auto& message = control<QLabel>("messageLabel");
    record(QStringLiteral("a"));
    m_loop.advance(1s);
    button("cancelButton").click();
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    record(QStringLiteral("a"));
    m_recorder.end(
        AudioError{QStringLiteral("Failed to read AU: 5"), 5, QStringLiteral("No such entity")});
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    EXPECT_EQ(message.text(), QStringLiteral("The recording failed: No such entity."));
    EXPECT_TRUE(log.messages().contains(
        QStringLiteral("dorvane.sounds: cannot record: Failed to read AU: 5 - No such entity")));

    ASSERT_TRUE(m_recorder.record(QStringLiteral("/elsewhere"), [](const auto&) {}));
    record(QStringLiteral("a"));
    EXPECT_EQ(enabled(), "reminderTitle recordButton okButton comboBox");
    EXPECT_TRUE(message.text().contains(QStringLiteral("another window"))) << "says why";
    m_recorder.end({});

    record(QStringLiteral("a"));
    EXPECT_EQ(message.text(), QString());
    m_loop.advance(1s);
    window()->close();
    m_loop.advance(20s);
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(m_recorder.isRecording());
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(m_trace.events().back(), "2000 cancel");
}

TEST_F(ReminderControllerTest, playingShowsAndStopsAndGoesWithTheChoiceAndTheWindow) {
    add(QStringLiteral("song.aiff"));
    const std::string song = m_folder.toStdString() + "/song.aiff";
    const LogCapture log;
    open();
    comboBox().setCurrentIndex(0);
    m_loop.runPending();
    QTest::keyClick(&button("playButton"), Qt::Key_Return);
    EXPECT_EQ(button("playButton").accessibleName(), QStringLiteral("Stop playing"));
    comboBox().showPopup(); // a look at the list stops nothing
    m_loop.runPending();
    comboBox().hidePopup();
    m_loop.advance(1s);
    EXPECT_EQ(button("playButton").accessibleName(), QStringLiteral("Play"));
    button("playButton").click();
    m_loop.advance(500ms);
    button("playButton").click();
    m_loop.advance(500ms);
    m_player.hasServer = false;
    button("playButton").click();
    EXPECT_EQ(button("playButton").accessibleName(), QStringLiteral("Play"));
    m_player.hasServer = true;
    button("playButton").click();
    window()->close();
    m_loop.runPending();
    EXPECT_THAT(m_trace.events(), ElementsAre("0 " + song + " play", "1000 " + song + " finished",
                                              "1000 " + song + " play", "1500 " + song + " stop",
                                              "2000 " + song + " refused", "2000 " + song + " play",
                                              "2000 " + song + " dropped"));
    EXPECT_TRUE(m_player.sounds().empty());
}

TEST_F(ReminderControllerTest, typingCompletesAndChooses) {
    for (const char* name : {"Tea.aiff", "Bus.aiff", "Butter.aiff"})
        add(QString::fromLatin1(name));
    open();
    const QString firstWithB = comboBox().itemText(
        comboBox().findText(QStringLiteral("B"), Qt::MatchStartsWith | Qt::MatchCaseSensitive));
    struct {
        const char* keys; // '<' for Backspace
        QString text;
        bool isChosen;
    } const steps[] = {
        {"T", QStringLiteral("Tea"), true},
        {"<", QStringLiteral("T"), false},
        {"e", QStringLiteral("Tea"), true},
        {"x", QStringLiteral("Tex"), false},
        {"<<<", QString(), false},
        {"B", firstWithB, true},
        {"utt", QStringLiteral("Butter"), true},
        {"er", QStringLiteral("Butter"), true},
        {"<<<<<<b", QStringLiteral("b"), false},
    };
    for (const auto& [keys, text, isChosen] : steps) {
        for (const char* key = keys; *key; ++key) {
            if (*key == '<')
                QTest::keyClick(comboBox().lineEdit(), Qt::Key_Backspace);
            else
                QTest::keyClick(comboBox().lineEdit(), *key);
        }
        m_loop.runPending();
        EXPECT_EQ(comboBox().currentText(), text) << keys;
        EXPECT_EQ(comboBox().currentIndex() >= 0, isChosen) << keys;
        EXPECT_EQ(button("playButton").isEnabled(), isChosen) << keys;
    }
    comboBox().showPopup();
    comboBox().hidePopup();
    EXPECT_EQ(comboBox().currentText(), QStringLiteral("b")) << "what was typed stays";
}

TEST_F(ReminderControllerTest, deletedRecordingGivesWayToTheOneBefore) {
    add(QStringLiteral("a.aiff"));
    add(QStringLiteral("b.aiff"));
    open();
    comboBox().setCurrentIndex(1);
    m_loop.runPending();
    const QString before = comboBox().itemText(0);
    button("deleteButton").click();
    m_loop.runPending();
    EXPECT_EQ(comboBox().currentText(), before);
    EXPECT_EQ(files(), QStringList{before + QStringLiteral(".aiff")});

    QFile::remove(m_folder + QLatin1Char('/') + files().first()); // by the file manager
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(window(), &activation);
    EXPECT_EQ(enabled(), "reminderTitle okButton comboBox");
    EXPECT_EQ(comboBox().count(), 0);
}

TEST_F(ReminderControllerTest, sixteenthRecordingDeletesTheOldestAndASecondTakeReplacesTheFirst) {
    open();
    for (int i = 1; i <= 17; ++i) {
        record(QString::number(std::min(i, 16)));
        button("stopButton").click();
        m_loop.runPending();
        EXPECT_EQ(comboBox().count(), std::min(i, 15));
    }
    EXPECT_EQ(comboBox().itemText(0), QStringLiteral("16"));
    EXPECT_EQ(files().size(), 15);
    EXPECT_FALSE(files().contains(QStringLiteral("1.aiff")));
}

} // namespace

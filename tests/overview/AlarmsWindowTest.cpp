// SPDX-License-Identifier: GPL-3.0-or-later
#include "overview/AlarmsWindow.h"

#include "core/NotificationNames.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Windows.h"

#include <QTreeView>

using namespace dorvane::testing;

namespace {

// On a Tuesday at ten: what runs as the clock lists it, and the library.
class AlarmsWindowTest : public ::testing::Test {
protected:
    AlarmsWindowTest() {
        const AlarmOf tea{
            .title = "Tea", .minutes = 30, .runTime = "11-24 09:50", .isListed = true};
        running = {
            AlarmOf{.title = "Xmas", .kind = Alarm::Dated, .time = "12-24 18:00"}.alarm(),
            AlarmOf{.title = "default", .minutes = 5, .runTime = "11-24 09:59", .isPreset = true}
                .alarm(),
            AlarmOf{.title = "Work",
                    .kind = Alarm::Weekly,
                    .time = "11-25 07:15",
                    .days = {Weekday::Monday, Weekday::Wednesday},
                    .forever = true,
                    .sound = "/sounds/Brook.mp3"}
                .alarm(),
            tea.alarm()};
        for (const AlarmPtr& alarm : running)
            alarm->setIdentity(alarm->title());
        stored = {AlarmOf{.title = "Bread", .minutes = 50}.alarm(),
                  AlarmOf{.title = "default", .minutes = 5, .isPreset = true}.alarm(),
                  AlarmOf{.title = "Tea", .minutes = 45}.alarm(), tea.alarm()};
        window.present();
    }

    // "x Tea|Tue, 10:20||silent", the chosen one in brackets.
    std::string shown() const {
        std::string all;
        const QAbstractItemModel& model = *list().model();
        for (int i = 0; i < model.rowCount(); ++i) {
            const QModelIndex index = model.index(i, 0);
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells << model.index(i, column).data().toString();
            const bool isOn = index.data(Qt::CheckStateRole) == Qt::Checked;
            const QString row = (isOn ? u"x "_qs : u"- "_qs) + cells.join(u'|');
            const bool isChosen = list().currentIndex().row() == i;
            all += (isChosen ? u'[' + row + u']' : row).toStdString() + "\n";
        }
        return all;
    }
    QTreeView& list() const { return *window.findChild<QTreeView*>(); }
    QLineEdit& field() const { return *window.findChild<QLineEdit*>(); }
    QPushButton& button(const char* name) const {
        return *window.findChild<QPushButton*>(QLatin1String(name));
    }
    std::function<void(const AlarmPtr&)> noted(const char* what) {
        return [this, what](const AlarmPtr& alarm) {
            trace.add(QLatin1String(what) + u' ' + alarm->title());
        };
    }

    VirtualRunLoop loop{at("11-24 10:00")};
    Trace trace{loop};
    NotificationCenter notifications;
    std::vector<AlarmPtr> running, stored;
    std::optional<QString> deleted;
    AlarmsWindow window{{.runLoop = loop,
                         .notifications = notifications,
                         .running = [this] { return running; },
                         .stored = [this] { return stored; },
                         .summary = [this] { return deleted.value_or(QString()); },
                         .create = [this] { trace.add(u"create"_qs); },
                         .edit = noted("edit"),
                         .switchOn = noted("on"),
                         .switchOff = noted("off"),
                         .skip = noted("skip"),
                         .duplicate =
                             [this](const AlarmPtr& alarm) {
                                 stored.push_back(
                                     AlarmOf{.title = "Bread 2", .minutes = 50}.alarm());
                                 return alarm->title() + u" 2"_qs;
                             },
                         .remove =
                             [this](const AlarmPtr& runs, const AlarmPtr& kept) {
                                 trace.add((runs ? runs->title() : u"-"_qs) + u'/' +
                                           (kept ? kept->title() : u"-"_qs));
                                 std::erase(running, runs);
                                 std::erase(stored, kept);
                                 deleted = u"Tea"_qs;
                             },
                         .undo = [this] { trace.add(u"undo"_qs); },
                         .undoable = [this] { return deleted; }}};
};

TEST_F(AlarmsWindowTest, listsWhatRunsByItsNextRingAndThenWhatIsOnlyStored) {
    EXPECT_EQ(shown(), "[x 5 min|Tue, 10:04||silent]\n"
                       "x Tea|Tue, 10:20||silent\n"
                       "x Work|Wed, 7:15|Mon Wed every week|Brook\n"
                       "x Xmas|24 Dec, 18:00||silent\n"
                       "- Tea|45 min||silent\n"
                       "- Bread|50 min||silent\n");
    QTest::keyClicks(&field(), u"WED work"_qs);
    EXPECT_EQ(shown(), "[x Work|Wed, 7:15|Mon Wed every week|Brook]\n");
    EXPECT_TRUE(button("skipButton").isEnabled());
    QTest::keyClicks(&field(), u"shop"_qs);
    EXPECT_EQ(shown(), "");
    EXPECT_FALSE(button("editButton").isEnabled());
}

TEST_F(AlarmsWindowTest, everythingIsDoneFromTheKeyboard) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&field(), Qt::Key_Down);
    const auto press = [this](int key) {
        QTest::keyClick(&list(), Qt::Key(key));
        loop.advance(1s);
    };
    for (const int key : {Qt::Key_Space, Qt::Key_Down, Qt::Key_Return})
        press(key);
    EXPECT_FALSE(button("skipButton").isEnabled()) << "a timer comes once";
    press(Qt::Key_Delete);
    EXPECT_TRUE(button("undoButton").isEnabled());
    notifications.post(alarmsDidChangeNotification);
    notifications.post(summaryDidChangeNotification);
    loop.advance(1s);
    EXPECT_THAT(shown(), StartsWith("x 5 min|Tue, 10:04||silent\n[x Work"))
        << "the one in the place of that which went";
    EXPECT_EQ(window.findChild<QLabel*>()->text(), u"Tea"_qs);
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_End);
    press(Qt::Key_Space);
    button("duplicateButton").click();
    loop.advance(1s);
    EXPECT_THAT(shown(), EndsWith("- Tea|45 min||silent\n- Bread|50 min||silent\n"
                                  "[- Bread 2|50 min||silent]\n"));
    EXPECT_THAT(trace.events(), ElementsAre("0 off default", "2000 edit Tea", "3000 Tea/Tea",
                                            "5000 undo", "6000 on Bread"));
}

} // namespace

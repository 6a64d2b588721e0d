// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "menubar/MainMenuConstructor.h"
#include "menubar/StatusMenu.h"
#include "tests/menubar/RecordedCommands.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/Windows.h"

#include <QAccessible>

using namespace dorvane::testing;

namespace {

class MainMenuTest : public ::testing::Test {
protected:
    MainMenuTest() { m_constructor.setObjectMenu(&m_menu); }

    static AlarmPtr dated(const char* title, bool isListed = false) {
        return AlarmOf{
            .title = title, .kind = Alarm::Dated, .time = "11-24 11:00", .isListed = isListed}
            .alarm();
    }
    // The item whose text begins so.
    [[nodiscard]] static QAction* item(const QMenu& menu, const char* text) {
        for (QAction* action : menu.actions())
            if (action->text().startsWith(QLatin1String(text)))
                return action;
        ADD_FAILURE() << "no item " << text;
        return nullptr;
    }
    void open() {
        m_constructor.constructMenu();
        m_menu.popup({0, 0});
    }
    void click(QMenu& menu, QAction* action) {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
    }
    // What was done since the last call; the menu must have closed for it.
    QStringList done() {
        EXPECT_FALSE(m_menu.isVisible());
        EXPECT_EQ(m_trace, QStringList()) << "only from the event loop";
        m_loop.runPending();
        return std::exchange(m_trace, {});
    }

    VirtualRunLoop m_loop{QDateTime({2026, 11, 24}, {10, 0, 0, 250})};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    QStringList m_trace;
    std::vector<AlarmPtr> m_stored{dated("Up", true)};
    StatusMenu m_menu{m_loop};
    FakeStatusItem m_item;
    MainMenuConstructor m_constructor{m_loop,
                                      m_clock,
                                      m_notifications,
                                      m_item,
                                      MenuSources{[this] { return std::optional(m_stored); }, {}},
                                      recordedCommands(m_trace),
                                      QLocale::c()};
};

TEST_F(MainMenuTest, parentItemActsOnClickAndReturnAndOpensOnTheArrow) {
    const QStringList setsUp{u"setAlarm Up"_qs};
    open();
    click(m_menu, item(m_menu, "Tue, 11:00 Up"));
    EXPECT_EQ(done(), setsUp) << "click";

    open();
    m_menu.setActiveAction(item(m_menu, "Tue, 11:00 Up"));
    QTest::keyClick(&m_menu, Qt::Key_Return);
    EXPECT_EQ(done(), setsUp) << "Return";

    open();
    QMenu* submenu = item(m_menu, "Tue, 11:00 Up")->menu();
    m_menu.setActiveAction(item(m_menu, "Tue, 11:00 Up"));
    QTest::keyClick(&m_menu, Qt::Key_Right);
    ASSERT_TRUE(submenu->isVisible());
    QTest::keyClick(submenu, Qt::Key_Down);
    QTest::keyClick(submenu, Qt::Key_Return);
    EXPECT_EQ(done(), QStringList{u"deleteAlarm Up"_qs}) << "Right, Down, Return";

    open();
    const QPoint row = m_menu.actionGeometry(item(m_menu, "Tue, 11:00 Up")).center();
    QTest::mousePress(&m_menu, Qt::LeftButton, {}, row);
    ASSERT_TRUE(QTest::qWaitFor([&] { return submenu->isVisible(); }));
    QTest::keyClick(submenu, Qt::Key_Return);
    EXPECT_EQ(done(), setsUp) << "Return while the pointer has opened the submenu";

    open();
    QTest::mouseRelease(&m_menu, Qt::LeftButton, {}, row);
    EXPECT_TRUE(m_menu.isVisible()) << "the release of the press that opened the menu";
    m_loop.runPending();
    EXPECT_EQ(m_trace, QStringList());
}

TEST_F(MainMenuTest, openMenuHoldsUpTimersAndStaysAsItIs) {
    const AlarmPtr alarm = dated("Tea");
    m_clock.insertAlarm(alarm);
    open();
    EXPECT_EQ(alarm->menuItem(), item(m_menu, "Tue, 11:00 Tea"));
    const std::int64_t before = m_loop.firings();
    item(m_menu, "Tue, 11:00 Tea")->menu()->popup({50, 0});
    m_loop.advance(3s);
    m_clock.removeAlarm(alarm);
    m_constructor.constructMenu();
    EXPECT_TRUE(m_menu.isVisible());
    EXPECT_NE(item(m_menu, "Tue, 11:00 Tea"), nullptr);
    EXPECT_EQ(m_loop.firings(), before);

    m_menu.close();
    m_loop.advance(1s);
    EXPECT_GT(m_loop.firings(), before);
    m_constructor.constructMenu();
    EXPECT_NE(item(m_menu, "No Alarms"), nullptr);
    EXPECT_EQ(alarm->menuItem(), nullptr);
}

// A line for each entry: its title, what makes it itself, whether it is disabled.
QStringList outline(const std::vector<PanelMenuEntry>& entries, const QString& indent = {}) {
    QStringList lines;
    for (const PanelMenuEntry& entry : entries) {
        lines << indent + (entry.isSeparator ? u"--"_qs : entry.text) +
                     (entry.key == entry.text ? QString() : u'|' + entry.key) +
                     (entry.isEnabled || entry.isSeparator ? QString() : u" off"_qs);
        lines << outline(entry.children, indent + u' ');
    }
    return lines;
}

TEST_F(MainMenuTest, aPanelGetsTheMenuWhenEntriesChangeAndItsTextsWhenItOpens) {
    m_clock.insertAlarm(AlarmOf{.minutes = 5, .isPreset = true}.alarm());
    m_stored = {dated("Down_ & up", true)};
    m_clock.insertAlarm(dated("Tea"));
    m_loop.runPending();
    const auto menu = [this] { return outline(m_item.panelMenu); };
    const QStringList shown = menu();
    EXPECT_EQ(shown.mid(0, 11).join(u','),
              u"Active alarms: off,Tue, 11:00 Tea|, Edit..., Clear, Save, Delete,"
              "In 4 mins at 10:05|, Edit..., Clear, Delete,--"_qs);
    EXPECT_EQ(shown.mid(shown.indexOf(u"Inactive alarms: off"_qs), 6).join(u','),
              u"Inactive alarms: off,Tue, 11:00 Down_ & up|Down_ & up, Set, Edit...,"
              " Delete,--"_qs);
    EXPECT_EQ(m_item.panelMenu[1].subject, m_clock.allAlarms()[0]);

    m_loop.advance(90s);
    EXPECT_EQ(menu(), shown);
    m_item.panelMenuWillOpen();
    EXPECT_EQ(menu()[6], u"In 3 mins at 10:05|"_qs);
    m_loop.defer(m_item.panelMenu[14].children.front().chosen);
    EXPECT_EQ(done(), QStringList{u"setAlarm Down_ & up"_qs});
}

TEST_F(MainMenuTest, anyTitleLeavesTheMenuWhole) {
    const QString titles[] = {u"&Tea & && cake&"_qs,
                              u"line\nline\ttab\u2029"_qs,
                              QString(10'000, u'W'),
                              u"\u05e9\u05dc\u05d5\u05dd \u0645\u0631\u062d\u0628\u0627"_qs,
                              u"\U0001F680"_qs.repeated(40),
                              u'a' + u"\U0001F680"_qs.repeated(40),
                              QString(u'\u001f'),
                              QString(),
                              QString(3000, QChar(0x0301))};
    for (const QString& title : titles)
        m_clock.insertAlarm(dated(title.toUtf8().constData()));
    m_loop.runPending();
    EXPECT_GT(m_item.panelMenu.size(), std::size(titles));
    for (const PanelMenuEntry& entry : m_item.panelMenu)
        EXPECT_TRUE(entry.text.isValidUtf16()) << "half an emoji";
    open();
    m_menu.grab();
    EXPECT_LT(m_menu.width(), 320);
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&m_menu);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->child(9)->text(QAccessible::Name), u"Tue, 11:00 &Tea & && cake&"_qs);
}

} // namespace

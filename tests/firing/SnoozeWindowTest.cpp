// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/firing/RingingFixture.h"

using namespace dorvane::testing;

namespace {

using SnoozeWindowTest = RingingFixture;

TEST_F(SnoozeWindowTest, windowShowsATitleOfAnyLengthInTwoLines) {
    const QString word = u"Donaudampfschifffahrt"_qs;
    const QString wide = u"\u8d77\u5e8a"_qs;
    const struct {
        QString title, begin;
        bool isCut = false;
    } cases[] = {
        {u"<b>Tea</b> & cake"_qs, u"<b>Tea</b> & cake"_qs},
        {word.repeated(2) + u" now"_qs, word},
        {word.repeated(500), word, true},
        {wide.repeated(80), wide, true},
    };
    for (const auto& [title, begin, isCut] : cases) {
        const AlarmPtr titled = alarm({});
        titled->setTitle(title);
        m_ringer.activateAlarm(titled);
        loop.advance(1s);
        const QWidget& window = *windows().front();
        const auto label = window.findChild<QLabel*>(u"titleLabel"_qs);
        SCOPED_TRACE(label->text().toStdString());
        EXPECT_TRUE(label->text().startsWith(begin));
        EXPECT_EQ(label->text().endsWith(u'\u2026'), isCut);
        EXPECT_EQ(label->toolTip().isEmpty(), !isCut);
        EXPECT_LE(label->text().count(u'\n'), 1);
        EXPECT_LE(label->fontMetrics().size(0, label->text()).width(), label->width());
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(window.findChild<QLabel*>(u"timeLabel"_qs)->text(), u"Tue, 7:30"_qs);
        titled->context()->close();
    }
}

TEST_F(SnoozeWindowTest, windowsOfOneSizeHideNothingOfEachOtherAndUseEveryPlaceAgain) {
    ring({.title = "a"});
    loop.advance(1s);
    const QRect first = windowOf("a")->geometry();
    EXPECT_EQ(first.topLeft(), QPoint(300, 40));
    const auto clearAll = [] { return windowOf("a")->findChild<QWidget*>(u"clearAllButton"_qs); };
    const AlarmPtr second = ring({.title = "b"});
    loop.advance(1s);
    EXPECT_FALSE(clearAll()->isVisible()) << "two are answered one by one";
    for (int i = 0; i < 50; ++i)
        ring({.title = "with a title of two lines, or nearly so, and the voice of nobody"});
    loop.advance(1s);
    EXPECT_TRUE(clearAll()->isVisible());
    QRegion seen;
    const QList<QWidget*> shown = windows();
    for (const QWidget* window : shown) {
        EXPECT_EQ(window->size(), first.size());
        EXPECT_TRUE(window->screen()->geometry().contains(window->geometry()));
        EXPECT_FALSE(seen.intersects(window->geometry()));
        seen += window->geometry();
    }
    EXPECT_GT(shown.size(), 4);
    EXPECT_LT(shown.size(), 52) << "the others wait for a place";
    const QRect place = windowOf("b")->geometry();
    second->context()->close();
    loop.advance(1s);
    const QList<QWidget*> then = windows();
    EXPECT_EQ(then.size(), shown.size());
    EXPECT_TRUE(std::any_of(then.begin(), then.end(),
                            [&](const QWidget* each) { return each->geometry() == place; }));
}

// What somebody is typing when the keyboard goes to the next window does not press that one; but
// whoever has answered one by key or click means the next key for the next.
TEST_F(SnoozeWindowTest, keyboardGoesFromAnAnsweredWindowToTheNext) {
    for (const char* title : {"a", "b"})
        ring({.title = title});
    loop.advance(1s);
    trace.clear();
    windowOf("a")->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("a")));
    for (const char* title : {"c", "d"})
        ring({.title = title});
    loop.advance(1s);
    EXPECT_TRUE(windowOf("a")->isActiveWindow()) << "the new ones do not take it";
    const auto showsDefault = [](const char* title) {
        return windowOf(title)->findChild<QPushButton*>(u"snoozeButton"_qs)->isDefault();
    };
    EXPECT_TRUE(showsDefault("a"));
    EXPECT_FALSE(showsDefault("b")) << "one looks as if Return pressed it";
    click("a", "clearButton");
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("b")));
    EXPECT_TRUE(showsDefault("b"));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
    QApplication::sendEvent(windowOf("b")->focusWidget(), &held);
    QTest::keyClick(windowOf("b")->focusWidget(), Qt::Key_Return);
    EXPECT_THAT(trace.events(),
                ElementsAre("1000 flash", "1000 flash", "2000 a cleared", "2000 b snoozed"));
    trace.clear();
    m_alarms[1]->context()->close();
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("c")));
    m_alarms[2]->context()->close(); // it was answered elsewhere
    ASSERT_TRUE(QTest::qWaitForWindowActive(windowOf("d")));
    for (const auto pause : {0ms, 499ms, 500ms}) {
        loop.advance(pause);
        QTest::keyClick(windowOf("d")->focusWidget(), Qt::Key_Space);
    }
    EXPECT_THAT(trace.events(), ElementsAre("2999 d snoozed"));
}

TEST_F(SnoozeWindowTest, keysThatWereMeantForAnotherWindowPressNothing) {
    const struct {
        const char* title;
        Qt::Key key;
        std::vector<RunLoop::Milliseconds> presses; // after the window came up
    } cases[] = {
        {"within half a second", Qt::Key_Return, {499ms}},
        {"typing goes on", Qt::Key_Space, {200ms, 500ms, 900ms, 1200ms}},
        {"after half a second", Qt::Key_Space, {500ms}},
        {"after a pause", Qt::Key_Return, {100ms, 600ms}},
        {"escape", Qt::Key_Escape, {700ms}},
    };
    SnoozeWindowStack stack(loop, *this);
    for (const auto& [title, key, presses] : cases) {
        const auto start = loop.uptime();
        const auto controller =
            SnoozeWindowController::showCloseTo(stack, loop, *this, alarm({.title = title}));
        EXPECT_TRUE(QTest::qWaitForWindowActive(windowOf(title)));
        for (const auto press : presses) {
            loop.advance(start + press - loop.uptime());
            QTest::keyClick(windowOf(title)->focusWidget(), key);
        }
        controller->close();
        loop.advance(start + 10s - loop.uptime());
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_THAT(trace.events(), ElementsAre("20500 after half a second snoozed",
                                            "30600 after a pause snoozed", "40700 escape snoozed"));
}

} // namespace

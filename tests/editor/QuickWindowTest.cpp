// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/QuickWindow.h"

#include "tests/support/Windows.h"

#include <QLineEdit>
#include <QPlainTextEdit>

using namespace dorvane::testing;

namespace {

TEST(QuickWindowTest, saysWhatItReadAndReturnSetsIt) {
    VirtualRunLoop loop{at("2026-11-24 10:00")};
    Trace trace{loop};
    QuickWindow window({loop,
                        [] {
                            return RingDefaults{u"/Ping"_qs, 7};
                        },
                        [&](const AlarmPtr& alarm) {
                            trace.add(alarm->title() +
                                      alarm->time(instantNow(loop)).toString(u" dd. HH:mm:ss"_qs));
                        }});
    window.showForTyping();
    auto& field = *window.findChild<QLineEdit*>();
    const auto said = [&] { return window.findChild<QPlainTextEdit*>()->toPlainText(); };
    const auto type = [&](const char* text) {
        field.clear();
        QTest::keyClicks(&field, QString::fromLatin1(text));
    };
    for (const char* text : {"", "tea", "today 9"}) {
        type(text);
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_TRUE(window.isVisible()) << text;
    }
    EXPECT_EQ(said(), u"That moment has passed."_qs);
    type("30s egg");
    EXPECT_EQ(said(), u"Alarm 'egg' will ring 30 seconds from now."_qs);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    window.showForTyping();
    EXPECT_TRUE(field.text().isEmpty());
    type("10:01 gym");
    EXPECT_THAT(said().toStdString(), ::testing::HasSubstr("gym"));
    loop.advance(2min); // it means tomorrow's by now
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_THAT(trace.events(), ElementsAre("0 egg 24. 10:00:30", "120000 gym 25. 10:01:00"));
}

} // namespace

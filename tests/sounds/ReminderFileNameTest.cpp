// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderFileName.h"

#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

TEST(ReminderFileNameTest, anyTextIsASafeNameThatTellsTheTextAgain) {
    const std::pair<const char*, const char*> cases[] = {
        {"Ça va? 早い \\ : *", "Ça va? 早い \\ : *"},
        {"../../etc/passwd", "%2E.%2F..%2Fetc%2Fpasswd"},
        {"..", "%2E."},
        {" a b  ", "%20a b %20"},
        {"two\nlines\t\x7f", "two%0Alines%09%7F"},
        {"100% sure", "100%25 sure"},
        {"%~12345678", "%25~12345678"},
        {"", "%_"},
    };
    for (const auto& [text, name] : cases) {
        EXPECT_EQ(reminderFileName(QString::fromUtf8(text)), QString::fromUtf8(name));
        EXPECT_EQ(reminderText(QString::fromUtf8(name)), QString::fromUtf8(text)) << name;
    }
    for (const char* name : {"100% sure", "%2", "%zz", "a%2f", "a%~short"}) // given by the user
        EXPECT_EQ(reminderText(QString::fromLatin1(name)), QString::fromLatin1(name));
}

TEST(ReminderFileNameTest, longTextsAreCutBetweenCharactersAndStayApart) {
    for (const char* piece : {"x", "ab€", "a%", "😀"}) {
        const QString text = QString::fromUtf8(piece).repeated(300);
        const QString name = reminderFileName(text);
        EXPECT_LE(name.toUtf8().size(), 200);
        EXPECT_GT(name.toUtf8().size(), 190) << piece;
        EXPECT_NE(name, reminderFileName(text + u"!"_qs));
        const QString shown = reminderText(name);
        EXPECT_TRUE(shown.endsWith(u"…"_qs));
        EXPECT_TRUE(text.startsWith(shown.chopped(1))) << qPrintable(shown);
    }
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderFileName.h"

#include <gtest/gtest.h>

using namespace dorvane;

namespace {

TEST(ReminderFileNameTest, anyTextIsASafeNameThatTellsTheTextAgain) {
    struct Case {
        QString text;
        QString name;
    };
    const Case cases[] = {
        {QStringLiteral("Tea time"), QStringLiteral("Tea time")},
        {QStringLiteral("Ça va? 早い \\ : *"), QStringLiteral("Ça va? 早い \\ : *")},
        {QStringLiteral("../../etc/passwd"), QStringLiteral("%2E.%2F..%2Fetc%2Fpasswd")},
        {QStringLiteral("/"), QStringLiteral("%2F")},
        {QStringLiteral("."), QStringLiteral("%2E")},
        {QStringLiteral(".."), QStringLiteral("%2E.")},
        {QStringLiteral(".hidden"), QStringLiteral("%2Ehidden")},
        {QStringLiteral("v1.2."), QStringLiteral("v1.2.")},
        {QStringLiteral(" a b  "), QStringLiteral("%20a b %20")},
        {QStringLiteral("two\nlines\t\x7f"), QStringLiteral("two%0Alines%09%7F")},
        {QString(QChar(0)), QStringLiteral("%00")},
        {QStringLiteral("100% sure"), QStringLiteral("100%25 sure")},
        {QStringLiteral("%2F"), QStringLiteral("%252F")},
        {QStringLiteral("%~12345678"), QStringLiteral("%25~12345678")},
        {QString(), QStringLiteral("%_")},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(reminderFileName(c.text), c.name) << qPrintable(c.text);
        EXPECT_EQ(reminderText(c.name), c.text) << qPrintable(c.name);
    }
}

TEST(ReminderFileNameTest, longTextsAreCutBetweenCharactersAndStayApart) {
    for (const QString& piece : {QStringLiteral("x"), QStringLiteral("é"), QStringLiteral("ab€"),
                                 QStringLiteral("a%"), QStringLiteral("😀")}) {
        const QString text = piece.repeated(300);
        const QString name = reminderFileName(text);
        EXPECT_LE(name.toUtf8().size(), 200);
        EXPECT_GT(name.toUtf8().size(), 190) << qPrintable(name);
        EXPECT_NE(name, reminderFileName(text + QStringLiteral("!")));
        const QString shown = reminderText(name);
        EXPECT_TRUE(shown.endsWith(QStringLiteral("…")));
        EXPECT_TRUE(text.startsWith(shown.chopped(1))) << qPrintable(shown);
    }
}

TEST(ReminderFileNameTest, namesThatThePersonGaveAreTextsAsTheyAre) {
    for (const char* name : {"100% sure", "50%", "%2", "%zz", "a%2f", "a%~short"})
        EXPECT_EQ(reminderText(QString::fromLatin1(name)), QString::fromLatin1(name));
}

} // namespace

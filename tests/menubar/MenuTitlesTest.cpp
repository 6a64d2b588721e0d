// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuItemExtras.h"
#include "menubar/OneLine.h"

#include <gtest/gtest.h>

using namespace dorvane;

namespace {

TEST(MenuTitles, subtitleIsCutToItsWidth) {
    struct Case {
        const char* what;
        QString subtitle;
        double widthOfPart;
        QString expected;
    };
    const QString forty = QStringLiteral("abcdefghijklmnopqrstuvwxyzabcdefghijklmn");
    const Case cases[] = {
        {"fits", forty, 124.9, u' ' + forty},
        {"just does not", forty, 125.0, u' ' + forty.left(38) + QStringLiteral("...")},
        {"twice as wide", forty, 250.0, u' ' + forty.left(17) + QStringLiteral("...")},
        {"one huge letter", QStringLiteral("W"), 900.0, QStringLiteral("...")},
        {"ends inside an emoji", QStringLiteral("ab\U0001F600\U0001F600\U0001F600"), 200.0,
         QStringLiteral(" ab...")},
        {"ends before an accent", QStringLiteral("abe\u0301fgh"), 170.0, QStringLiteral(" ab...")},
        {"ten thousand", QString(10'000, u'x'), 60'000.0,
         u' ' + QString(17, u'x') + QStringLiteral("...")},
    };
    for (const Case& c : cases) {
        const auto width = [&](const QString& part) {
            EXPECT_EQ(part, u' ' + c.subtitle);
            return c.widthOfPart;
        };
        EXPECT_EQ(subtitlePart(c.subtitle, 125.0, width), c.expected) << c.what;
    }
}

TEST(MenuTitles, oneLine) {
    EXPECT_EQ(oneLine(QStringLiteral("a\nb\tc\u2028d"), 100), QStringLiteral("a b c d"));
    EXPECT_EQ(oneLine(QStringLiteral("abcdef"), 6), QStringLiteral("abcdef"));
    EXPECT_EQ(oneLine(QStringLiteral("abcdefg"), 6), QStringLiteral("abcdef..."));
}

} // namespace

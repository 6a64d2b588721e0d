// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuItemExtras.h"
#include "menubar/OneLine.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

TEST(MenuTitles, subtitleIsCutToItsWidth) {
    struct Case {
        const char* what;
        QString subtitle;
        double widthOfPart;
        QString expected;
    };
    const QString forty = u"abcdefghijklmnopqrstuvwxyzabcdefghijklmn"_qs;
    const Case cases[] = {
        {"fits", forty, 124.9, u' ' + forty},
        {"just does not", forty, 125.0, u' ' + forty.left(38) + u"..."_qs},
        {"one huge letter", u"W"_qs, 900.0, u"..."_qs},
        {"ends inside an emoji", u"ab\U0001F600\U0001F600\U0001F600"_qs, 200.0, u" ab..."_qs},
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
    EXPECT_EQ(oneLine(u"a\nb\tc\u2028d"_qs, 100), u"a b c d"_qs);
    EXPECT_EQ(oneLine(u"abcdef"_qs, 6), u"abcdef"_qs);
    EXPECT_EQ(oneLine(u"abcdefg"_qs, 6), u"abcdef..."_qs);
}

} // namespace

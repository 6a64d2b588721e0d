// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DatePicker.h"

#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

TEST(DatePickerTest, takesAPartOfADateThatIsTypedOver) {
    const struct {
        qsizetype part; // where the field is clicked
        const char* typed;
        const char* shown;
    } cases[] = {{0, "5", "05.11.2026"},        {0, "5.12", "05.12.2026"},
                 {0, "312", "31.02.2026"},      {0, "31.12.2027", "31.12.2027"},
                 {0, "31122027", "31.12.2027"}, {3, "12", "18.12.2026"},
                 {6, "2028", "18.11.2028"},     {0, "24 dec", "24.12.2026"},
                 {0, "24dec", "24.12.2026"},    {0, "fri", "20.11.2026"}};
    DatePicker field;
    field.setNow([] { return at("11-18 20:05:20"); });
    field.setTerritory(QLocale(QLocale::German));
    auto* edit = field.findChild<QLineEdit*>();
    for (const auto& c : cases) {
        field.setChosenDate(QDate(2026, 11, 18));
        const TextPart part = partAt(edit->text(), c.part);
        edit->setSelection(int(part.start), int(part.length));
        QTest::keyClicks(&field, QString::fromLatin1(c.typed));
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_EQ(edit->text(), field.isReadable() ? QLatin1String(c.shown) : edit->text())
            << c.typed;
        EXPECT_EQ(field.isReadable(), QLatin1String(c.typed) != QLatin1String("312")) << c.typed;
    }
    const std::pair<qsizetype, const char*> steps[] = {
        {0, "30.11.2026"}, {3, "30.12.2026"}, {6, "30.12.2027"}};
    field.setChosenDate(QDate(2026, 11, 29));
    for (const auto& [position, shown] : steps) {
        edit->setCursorPosition(int(position));
        QTest::keyClick(&field, Qt::Key_Up);
        EXPECT_EQ(edit->text(), QLatin1String(shown));
    }
}

} // namespace

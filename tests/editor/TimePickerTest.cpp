// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimePicker.h"

#include "tests/support/Windows.h"

#include <QHBoxLayout>

using namespace dorvane::testing;

namespace {

// Where the typing begins.
enum class Over { Everything, Hours, Minutes, Mark, TabbedInto };

// A field with another beside it, to which it can be left.
class TimePickerTest : public ::testing::Test {
protected:
    TimePickerTest() {
        auto* layout = new QHBoxLayout(&window);
        for (QWidget* widget : std::initializer_list<QWidget*>{&before, &field, &after})
            layout->addWidget(widget);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // Shows twenty past two in the afternoon, puts the cursor there and types.
    void type(const char* text, bool isTwelveHours, Over over) {
        before.setFocus();
        field.setTwelveHours(isTwelveHours);
        field.setChosenTime(QTime(14, 20));
        auto* edit = field.findChild<QLineEdit*>();
        const auto click = [edit](qsizetype position) {
            edit->setCursorPosition(int(position));
            const QPoint place = edit->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
            QTest::mouseClick(edit, Qt::LeftButton, {}, place);
            QCoreApplication::processEvents();
        };
        if (over == Over::TabbedInto)
            QTest::keyClick(&before, Qt::Key_Tab);
        else
            click(over == Over::Minutes ? edit->text().indexOf(u':') + 1
                  : over == Over::Mark  ? edit->text().indexOf(u' ') + 1
                                        : 0);
        if (over == Over::Everything)
            edit->selectAll();
        QTest::keyClicks(&field, QString::fromUtf8(text));
    }
    void leave() { QTest::keyClick(&field, Qt::Key_Tab); }
    std::string shown() { return field.findChild<QLineEdit*>()->text().toStdString(); }

    QWidget window;
    QLineEdit before;
    TimePicker field;
    QLineEdit after;
};

TEST_F(TimePickerTest, takesATimeAsPeopleTypeIt) {
    const struct {
        const char* typed;
        // What each clock makes of it; of the afternoon, where the twelve-hour clock must guess.
        QTime twentyFour, twelve;
    } cases[] = {
        {"7:30", {7, 30}, {19, 30}},    {"730", {7, 30}, {19, 30}},
        {"0730", {7, 30}, {19, 30}},    {"7.30", {7, 30}, {19, 30}},
        {"19:30", {19, 30}, {19, 30}},  {"1930", {19, 30}, {19, 30}},
        {"845p", {20, 45}, {20, 45}},   {"8:45 pm", {20, 45}, {20, 45}},
        {"730a", {7, 30}, {7, 30}},     {"7:30 a.m.", {7, 30}, {7, 30}},
        {"07:30 AM", {7, 30}, {7, 30}}, {"6:15", {6, 15}, {18, 15}},
        {"130", {1, 30}, {13, 30}},     {"2153", {21, 53}, {21, 53}},
        {"215", {2, 15}, {14, 15}},     {"12:30", {12, 30}, {12, 30}},
        {"12:30a", {0, 30}, {0, 30}},   {"1230p", {12, 30}, {12, 30}},
        {"0:05", {0, 5}, {0, 5}},       {"00:15", {0, 15}, {0, 15}},
        {"9 pm", {21, 0}, {21, 0}},     {"23:59", {23, 59}, {23, 59}},
        {"7p", {19, 0}, {19, 0}},       {"12a", {0, 0}, {0, 0}},
        {"7h30", {7, 30}, {19, 30}},
    };
    for (const auto& c : cases)
        for (const bool isTwelve : {false, true})
            for (const Over over : {Over::Everything, Over::Hours, Over::TabbedInto}) {
                type(c.typed, isTwelve, over);
                const QTime expected = isTwelve ? c.twelve : c.twentyFour;
                EXPECT_EQ(field.chosenTime(), expected)
                    << c.typed << " as " << shown() << ", twelve hours " << isTwelve << ", over "
                    << int(over);
                EXPECT_TRUE(field.isReadable());
                leave();
                EXPECT_EQ(field.chosenTime(), expected) << c.typed << " left, as " << shown();
            }
}

TEST_F(TimePickerTest, takesAPartThatIsClickedAndTypedOver) {
    const struct {
        Over over;
        const char* typed;
        const char* shown;
    } cases[] = {
        {Over::Hours, "7", "7:20 PM"},    {Over::Hours, "11", "11:20 PM"},
        {Over::Hours, "16", "4:20 PM"},   {Over::Minutes, "5", "2:5 PM"},
        {Over::Minutes, "05", "2:05 PM"}, {Over::Minutes, "45a", "2:45 AM"},
        {Over::Mark, "a", "2:20 AM"},     {Over::Mark, "am", "2:20 AM"},
        {Over::Hours, ":45", "2:45 PM"},
    };
    for (const auto& c : cases) {
        type(c.typed, true, c.over);
        leave();
        EXPECT_EQ(shown(), c.shown) << c.typed;
    }
    for (const auto& [over, up, down] : {std::tuple{Over::Hours, "3:20 PM", "2:20 PM"},
                                         {Over::Minutes, "2:21 PM", "2:20 PM"},
                                         {Over::Mark, "2:20 AM", "2:20 PM"}}) {
        type("", true, over);
        for (const auto& [key, expected] : {std::pair{Qt::Key_Up, up}, {Qt::Key_Down, down}}) {
            QTest::keyClick(&field, key);
            EXPECT_EQ(shown(), expected);
        }
    }
}

TEST_F(TimePickerTest, neverMakesAnotherTimeOfWhatItCannotRead) {
    int reports = 0;
    QObject::connect(&field, &TimePicker::chosenChanged, [&reports] { ++reports; });
    for (const char* typed :
         {"7:3", "7:60", "24:00", "13:00a", "0:30p", "12345", "noon", ":", "-5", "7:30x"})
        for (const bool isTwelve : {false, true}) {
            type(typed, isTwelve, Over::Everything);
            leave();
            EXPECT_FALSE(field.isReadable()) << typed;
            EXPECT_EQ(field.remark(), u"Not a time"_qs) << typed;
            EXPECT_EQ(field.accessibleDescription(), u"Not a time"_qs);
            EXPECT_GT(std::exchange(reports, 0), 0) << "Set must hear of " << typed;
        }
    type("7:45p", true, Over::Everything);
    EXPECT_TRUE(field.isReadable() && field.remark().isEmpty());
}

TEST_F(TimePickerTest, saysWhyATimeJumpsAndTakesItBack) {
    const std::optional<QDateTime> earliest = at("2026-11-18 20:06");
    field.setEarliestOn(QDate(2026, 11, 18), earliest);
    type("6:30a", true, Over::Everything);
    leave();
    EXPECT_EQ(shown(), "8:06 PM");
    EXPECT_EQ(field.remark(), u"6:30 AM has passed"_qs);
    EXPECT_TRUE(field.takeUnseenJump());
    EXPECT_FALSE(field.takeUnseenJump());
    field.setEarliestOn(QDate(2026, 11, 19), earliest);
    EXPECT_EQ(shown(), "6:30 AM");
    EXPECT_EQ(field.remark(), QString());
}

} // namespace

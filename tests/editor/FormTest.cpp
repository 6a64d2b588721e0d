// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmBuilding.h"
#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "editor/AlarmDescription.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

#include <limits>

using namespace dorvane::testing;

namespace {

constexpr qint64 largest = std::numeric_limits<qint64>::max();

TEST(FormTest, intervalIsOfPlainDigitsThatAreWorthMoreThanZero) {
    const struct {
        QString text;
        bool isValid, canBecome;
        qint64 value;
    } cases[] = {
        {u"007"_qs, true, true, 7},
        {u"9223372036854775807"_qs, true, true, largest},
        {QString(10000, u'9'), true, true, largest},
        {QString(), false, true, 0},
        {u"12a"_qs, false, false, 12},
        {u"٣"_qs, false, false, 0}, // three, in Arabic digits
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(qPrintable(c.text.left(30)));
        EXPECT_EQ(isValidInterval(c.text), c.isValid);
        EXPECT_EQ(canBecomeInterval(c.text), c.canBecome);
        EXPECT_EQ(intervalValue(c.text), c.value);
    }
}

// A Wednesday.
const QDateTime wednesday = at("11-18 08:00:20");

AlarmForm formOf(const AlarmOf& alarm) {
    return formFilledFrom(*alarm.alarm(), newAlarmForm(wednesday, 1), instantOf(wednesday));
}

TEST(FormTest, goesToTheLastFieldThatIsWrong) {
    const struct {
        AlarmOf alarm;
        const char* message;
        FormFaults::Field field;
    } cases[] = {
        {{.title = "a", .minutes = 525600}, "", FormFaults::Field::None},
        {{.title = "a", .minutes = 525601},
         "Alarm time must be 525600 minutes (a year) at most.\n",
         FormFaults::Field::Interval},
        {{.hours = 8761},
         "Title must not be empty.\nAlarm time must be 8760 hours (a year) at most.\n",
         FormFaults::Field::Interval},
        {{.title = " ", .kind = Alarm::Dated},
         "Title must not be empty.\n",
         FormFaults::Field::Title},
    };
    for (const auto& [alarm, message, field] : cases) {
        EXPECT_EQ(faultsOf(formOf(alarm)).message, QLatin1String(message));
        EXPECT_EQ(faultsOf(formOf(alarm)).field, field) << message;
    }
}

// What an edited alarm of the same kind goes on with is tested in tests/menubar/EditingTest.cpp.
TEST(FormTest, countsFromNowWhereAnAlarmOfAnotherKindWas) {
    const AlarmPtr running = AlarmOf{.kind = Alarm::Weekly, .runTime = "11-18 07:00"}.alarm();
    const auto edited = EditedAlarm{*running, true};
    EXPECT_EQ(brief(alarmBuiltFrom(formOf({.minutes = 5}), wednesday, {}, edited)->storedRunTime()),
              "11-18 08:00:20+01");
}

} // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmBuilding.h"
#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "editor/AlarmDescription.h"
#include "editor/SoundPreview.h"
#include "tests/support/Testing.h"

#include <limits>

namespace dorvane {

namespace {

using testing::at;
using testing::text;
using testing::VirtualRunLoop;

constexpr qint64 largest = std::numeric_limits<qint64>::max();

TEST(IntervalRule, TakesPlainDigitsThatAreWorthMoreThanZero) {
    struct Case {
        QString text;
        bool isValid;
        bool canBecome;
        qint64 value;
    };
    const Case cases[] = {
        {u"1"_qs, true, true, 1},
        {u"007"_qs, true, true, 7},
        {u"9999999"_qs, true, true, 9999999},
        {u"9223372036854775807"_qs, true, true, largest},
        {u"9223372036854775808"_qs, true, true, largest},
        {QString(10000, u'9'), true, true, largest},
        {QString(), false, true, 0},
        {u"0"_qs, false, true, 0},
        {u"000"_qs, false, true, 0},
        {u"12a"_qs, false, false, 12},
        {u"-5"_qs, false, false, 0},
        {u"+5"_qs, false, false, 0},
        {u" 5"_qs, false, false, 0},
        {u"5\n"_qs, false, false, 5},
        {u"1.5"_qs, false, false, 1},
        {u"1,000"_qs, false, false, 1},
        {u"٣"_qs, false, false, 0},  // three, in Arabic digits
        {u"５"_qs, false, false, 0}, // a five as wide as Chinese characters
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.text.left(30)));
        EXPECT_EQ(isValidInterval(c.text), c.isValid);
        EXPECT_EQ(canBecomeInterval(c.text), c.canBecome);
        EXPECT_EQ(intervalValue(c.text), c.value);
    }
}

AlarmForm tea(Alarm::Kind row) {
    AlarmForm form;
    form.row = row;
    form.title = u"Tea"_qs;
    form.interval = u"5"_qs;
    form.atTimePicker = QTime(18, 30);
    form.atTimePickerDate = form.atDatePicker = QDate(2026, 11, 15);
    form.atAlarmTimePicker = QTime(7, 30);
    form.snoozeTime = 9;
    form.soundPath = u"/rings/Ping.aiff"_qs;
    form.voiceName = u"Alex"_qs;
    return form;
}

TEST(Description, SaysWhatTheFormSays) {
    struct Case {
        const char* sentence;
        Alarm::Kind row;
        void (*change)(AlarmForm&);
    };
    const Case cases[] = {
        {"In 5 minute(s) alarm 'Tea' will be played with sound 'Ping' fading in.", Alarm::Relative,
         [](AlarmForm& f) { f.isPlaySound = f.shouldFadeIn = true; }},
        {"Every 2 hour(s) alarm 'Tea' will be spoken by voice 'Alex' and sound 'Ping' will be "
         "played.",
         Alarm::Relative,
         [](AlarmForm& f) {
             f.interval = u"2"_qs;
             f.isMinuteUnits = false;
             f.shouldRepeat = f.isPlaySound = f.isSpeakAlarmName = true;
         }},
        {"On every Monday Friday At 07:30 AM alarm 'Tea' will be activated.", Alarm::Weekly,
         [](AlarmForm& f) {
             f.weekdays = {Weekday::Monday, Weekday::Friday};
             f.shouldUseForever = true;
         }},
        {"On Sunday At 19:05 PM alarm 'Tea' will be activated.", Alarm::Weekly,
         [](AlarmForm& f) {
             f.weekdays = {Weekday::Sunday};
             f.atAlarmTimePicker = QTime(19, 5);
         }},
        {"At 00:00 AM alarm 'Tea' will be activated.", Alarm::Weekly,
         [](AlarmForm& f) {
             f.shouldUseForever = true;
             f.atAlarmTimePicker = QTime(0, 0);
         }},
        {"On Nov 15 at 18:30 alarm 'Tea' will be spoken by voice 'Alex'.", Alarm::Dated,
         [](AlarmForm& f) { f.isSpeakAlarmName = true; }},
        // The date picker alone does not change the date of the sentence.
        {"On Nov 15 at 18:30 alarm 'Tea' will be activated.", Alarm::Dated,
         [](AlarmForm& f) { f.atDatePicker = QDate(2126, 12, 24); }},
        // A night on which 02:30 does not exist in Berlin.
        {"On Mar 29 at 02:30 alarm 'Tea' will be activated.", Alarm::Dated,
         [](AlarmForm& f) {
             f.atTimePickerDate = QDate(2026, 3, 29);
             f.atTimePicker = QTime(2, 30);
         }},
        {"In 0 minute(s) alarm '' will be activated.", Alarm::Relative,
         [](AlarmForm& f) {
             f.title.clear();
             f.interval.clear();
             f.isPlaySound = f.isSpeakAlarmName = f.shouldFadeIn = true;
             f.soundPath.clear();
             f.voiceName.clear();
         }},
        {"In 5 minute(s) alarm 'Tea' will be spoken by voice 'Alex' and sound 'a.b' will be "
         "played fading in.",
         Alarm::Relative,
         [](AlarmForm& f) {
             f.isPlaySound = f.isSpeakAlarmName = f.shouldFadeIn = true;
             f.soundPath = u"/x.y/a.b.ogg"_qs;
         }},
        {"In 5 minute(s) alarm '%1 \"<b>' %n'' will be activated.", Alarm::Relative,
         [](AlarmForm& f) { f.title = u"%1 \"<b>' %n'"_qs; }},
    };
    for (const Case& c : cases) {
        AlarmForm form = tea(c.row);
        c.change(form);
        EXPECT_EQ(manageDescriptionLabel(form, QLocale(u"en_US"_qs)).toStdString(), c.sentence);
    }
}

TEST(Validation, CollectsWhatIsMissingAndGoesToTheLastField) {
    AlarmForm form = tea(Alarm::Relative);
    EXPECT_TRUE(faultsOf(form).message.isEmpty());
    for (const QString& refused : {QString(), u"0"_qs, u"12a"_qs}) {
        form.interval = refused;
        EXPECT_EQ(faultsOf(form).message, u"Alarm time is not set.\n"_qs);
        EXPECT_EQ(faultsOf(form).field, FormFaults::Field::Interval);
    }

    form.interval = u"525601"_qs;
    EXPECT_EQ(faultsOf(form).message, u"Alarm time must be 525600 minutes (a year) at most.\n"_qs);
    form.isMinuteUnits = false;
    EXPECT_EQ(faultsOf(form).message, u"Alarm time must be 8760 hours (a year) at most.\n"_qs);
    EXPECT_EQ(faultsOf(form).field, FormFaults::Field::Interval);

    form.interval = u"12a"_qs;
    form.isPlaySound = form.isSpeakAlarmName = true;
    form.title.clear();
    form.soundPath.clear();
    form.voiceName.clear();
    EXPECT_EQ(faultsOf(form).message, u"Title must not be empty.\n"
                                      "Alarm time is not set.\n"
                                      "Please select sound to play.\n"
                                      "Please select voice to speak with.\n"_qs);
    EXPECT_EQ(faultsOf(form).field, FormFaults::Field::Interval);

    form.row = Alarm::Dated;
    form.isPlaySound = form.isSpeakAlarmName = false;
    EXPECT_EQ(faultsOf(form).message, u"Title must not be empty.\n"_qs);
    EXPECT_EQ(faultsOf(form).field, FormFaults::Field::Title);
}

// A Wednesday.
const QDateTime wednesday = at("2026-11-18 08:00:20");

TEST(Building, FindsTheMoment) {
    struct Case {
        const char* what;
        const char* expected;
        void (*change)(AlarmForm&);
        QString todaysName = u"Wednesday"_qs;
    };
    const Case cases[] = {
        {"relative alarms have none", "none", [](AlarmForm& f) { f.row = Alarm::Relative; }},
        {"date of one picker, time of the other", "2126-12-24T18:30:00+01:00",
         [](AlarmForm& f) {
             f.row = Alarm::Dated;
             f.atDatePicker = QDate(2126, 12, 24);
         }},
        {"a time that the night skips", "2026-03-29T03:30:00+02:00",
         [](AlarmForm& f) {
             f.row = Alarm::Dated;
             f.atDatePicker = QDate(2026, 3, 29);
             f.atTimePicker = QTime(2, 30);
         }},
        {"no day ticked: today, also when past", "2026-11-18T07:30:00+01:00", [](AlarmForm&) {}},
        {"today ticked and ahead", "2026-11-18T09:00:00+01:00",
         [](AlarmForm& f) {
             f.weekdays = {Weekday::Wednesday};
             f.atAlarmTimePicker = QTime(9, 0);
         }},
        {"today ticked and past", "2026-11-20T07:30:00+01:00",
         [](AlarmForm& f) {
             f.weekdays = {Weekday::Wednesday, Weekday::Friday};
         }},
        {"only today ticked and past: a week", "2026-11-25T07:30:00+01:00",
         [](AlarmForm& f) { f.weekdays = {Weekday::Wednesday}; }},
        {"today not ticked", "2026-11-23T07:30:00+01:00",
         [](AlarmForm& f) { f.weekdays = {Weekday::Monday}; }},
        {"a language in which today has another name", "2026-11-18T07:30:00+01:00",
         [](AlarmForm& f) { f.weekdays = {Weekday::Monday}; }, u"Mittwoch"_qs},
    };
    for (const Case& c : cases) {
        AlarmForm form = tea(Alarm::Weekly);
        c.change(form);
        EXPECT_EQ(text(timeOf(form, wednesday, c.todaysName)), c.expected) << c.what;
    }
}

TEST(Building, GoesOnFromWhereAnAlarmOfItsKindWas) {
    const AlarmPtr running = Alarm::create();
    running->setRunTime(at("2026-11-18 07:00"));
    const auto runTime = [&](Alarm::Kind from, Alarm::Kind to) {
        running->setSelRowNo(from);
        return alarmBuiltFrom(tea(to), wednesday, u"Wednesday"_qs, running.get())->storedRunTime();
    };
    EXPECT_EQ(runTime(Alarm::Relative, Alarm::Relative), running->storedRunTime());
    EXPECT_EQ(runTime(Alarm::Weekly, Alarm::Relative), wednesday); // "in 5 minutes" is from now
    EXPECT_EQ(text(runTime(Alarm::Dated, Alarm::Weekly)), "2026-11-18T07:30:00+01:00");
}

TEST(Filling, StandsDamagedRecords) {
    const AlarmForm blank = newAlarmForm(at("2026-11-18 23:59:30"), 1);
    EXPECT_EQ(blank.atDatePicker, QDate(2026, 11, 19));
    EXPECT_EQ(blank.atTimePicker, QTime(0, 0));

    const AlarmPtr alarm = Alarm::create();
    alarm->setSelRowNo(-1);
    EXPECT_EQ(formFilledFrom(*alarm, blank, {}).row, Alarm::Relative);
    alarm->setSelRowNo(77);
    const AlarmForm form = formFilledFrom(*alarm, blank, {});
    EXPECT_EQ(form.row, Alarm::Weekly);
    EXPECT_EQ(form.atAlarmTimePicker, blank.atAlarmTimePicker); // it has no time
}

TEST(Preview, CountsTheVolumeBy255AndTellsItBy256) {
    EXPECT_FLOAT_EQ(previewVolume(128), 128.0F / 255.0F);
    EXPECT_EQ(previewVolumeToolTip(128), u"Using volume  50%"_qs);
    EXPECT_EQ(previewVolumeToolTip(255), u"Using volume 100%"_qs);
    EXPECT_EQ(previewVolumeToolTip(0), u"Using volume   0%"_qs);
}

} // namespace

} // namespace dorvane

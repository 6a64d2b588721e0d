// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QDate>
#include <QString>
#include <QTime>

#include <array>

namespace dorvane {

// What is said of an alarm that is to be made, by the controls of the alarm editor or by another
// program: a plain value, on which everything is decided. Dates and times are those of the clock on
// the wall.
struct AlarmForm {
    QString title;
    // The chosen row of the three.
    Alarm::Kind row = Alarm::Relative;

    // Row 0. The interval is kept as it was typed.
    QString interval;
    bool isMinuteUnits = true;
    bool shouldRepeat = false;

    // Row 1.
    QTime atTimePicker;
    QDate atDatePicker;
    bool shouldUseEveryDay = false;

    // Row 2.
    QTime atAlarmTimePicker;
    WeekdaySet weekdays;
    bool shouldUseForever = false;

    // Minutes; 0 when no length is selected.
    qint64 snoozeTime = 0;

    // Full path; empty for none.
    bool isPlaySound = false;
    QString soundPath;
    bool shouldFadeIn = false;
    bool ringsUntilAnswered = false;
    bool startsSoftly = false;

    // Empty for none.
    bool isSpeakAlarmName = false;
    QString voiceName;
};

// The minutes that an alarm can be snoozed for, in the order in which the editor offers them.
inline constexpr std::array<qint64, 12> snoozeLengths{5, 7, 9, 10, 15, 20, 30, 45, 60, 1, 2, 3};

// What a new alarm has where nobody says otherwise: a sound's full path, and minutes.
struct RingDefaults {
    QString soundPath;
    qint64 snooze = snoozeLengths.front();
};

// How long after now the earliest moment lies that a new alarm can be set to.
inline constexpr int secondsToEarliest = 60;

// The form of a new alarm, its sound aside. The snooze is in minutes.
[[nodiscard]] AlarmForm newAlarmForm(const QDateTime& now, qint64 snooze);

// The form for an alarm, snoozes aside. What the alarm's kind does not use stays as it is in
// `form`.
[[nodiscard]] AlarmForm formFilledFrom(const Alarm& alarm, AlarmForm form, Instant now);

// Whether both ask for the same time, by an alarm of the same kind.
[[nodiscard]] bool asksForTheSameTime(const AlarmForm& form, const AlarmForm& other);

// What is wrong with a form: the lines to show, each with its line break, and the field to go to.
struct FormFaults {
    enum class Field { None, Title, Interval };

    QString message; // empty for a form that is right
    Field field = Field::None;
};

[[nodiscard]] FormFaults faultsOf(const AlarmForm& form);

} // namespace dorvane

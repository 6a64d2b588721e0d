// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTime>

#include <optional>

namespace dorvane {

// How times of day are typed and shown: functions on the text of a field.

// "7:30 AM" on a twelve-hour clock, else "07:30".
[[nodiscard]] QString timeShown(QTime time, bool isTwelveHours);

struct TimeReading {
    std::optional<QTime> time;
    bool canBecomeTime = false; // by typing on
};

// Reads 7:30, 7.30, 730, 0730, 7, 19:30, 845p and 8:45 pm, on clocks of both kinds. What has no
// mark and may be either half of a twelve-hour clock's day is of the half of `before`.
[[nodiscard]] TimeReading timeRead(const QString& text, QTime before, bool isTwelveHours);

// A part of a text: the hours, the minutes or the mark.
struct TextPart {
    qsizetype start = 0;
    qsizetype length = 0;
};

// The part at a position of a time that is shown; the first one when there is none.
[[nodiscard]] TextPart partAt(const QString& text, qsizetype position);

// What a character makes of a text when it is typed over the selection. A part that was typed into
// takes more than its own: digits beyond the hours go on to the minutes in place of those that
// stood there, a colon steps over to them, and an a or p replaces the mark.
struct TypedTime {
    QString text;
    TextPart selection; // of length 0 for a cursor
};
[[nodiscard]] TypedTime timeTyped(const TypedTime& field, QChar character);

} // namespace dorvane

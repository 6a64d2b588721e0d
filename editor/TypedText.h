// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// How times of day and dates are typed: functions on the text of a field.

// A part of a text: the hours, the minutes, the mark, a day, a month or a year.
struct TextPart {
    qsizetype start = 0;
    qsizetype length = 0;
    qsizetype index = 0; // among the parts; 0 for what is selected
};

// The part at a position of what is shown; the first one when there is none.
[[nodiscard]] TextPart partAt(const QString& text, qsizetype position);

// A text with what is selected of it.
struct TypedText {
    QString text;
    TextPart selection; // of length 0 for a cursor
};

// What a character makes of a time when it is typed over the selection. A part that was typed into
// takes more than its own: digits beyond the hours go on to the minutes in place of those that
// stood there, a colon steps over to them, an a or p replaces the mark, and any other character
// behind the hours begins a time that is typed whole, such as 7h30 or 9 pm.
[[nodiscard]] TypedText timeTyped(const TypedText& field, QChar character);

// The same of a date whose parts stand in the order of the letters d, M and y: digits beyond a part
// go on to the next one, a separator steps over to it, and a letter at the beginning begins a date
// that is typed whole.
[[nodiscard]] TypedText dateTyped(const TypedText& field, QChar character, const QString& order);

} // namespace dorvane

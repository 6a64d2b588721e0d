// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Weekday.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <optional>

namespace dorvane {

// How dates are written: functions on text.

// A date as the territory writes it in short, but with the year in full and in our digits.
[[nodiscard]] QString dateShown(QDate date, const QLocale& territory);

// The letters d, M and y in the order in which the territory writes a date.
[[nodiscard]] QString dateOrder(const QLocale& territory);

// How many years ahead of the present one a date can be written: in a year that is further away
// somebody mistyped.
inline constexpr int mostYearsAhead = 50;

struct DateReading {
    std::optional<QDate> date;
    bool canBecomeDate = false; // by typing on
};

// The day of the week that a word names, by its name or by how that begins, in English and in the
// language of the territory.
[[nodiscard]] std::optional<Weekday> weekdayRead(const QString& word, const QLocale& territory);

// The date that a text names, for an alarm that is set at `now` for the `time` of day. Read are:
//
//   24.12.2026  24/12/26  24.12.   numbers in the order of the territory; two digits of a year are
//                                  of this century
//   2026-12-24  20261224           numbers in the order of ISO 8601, everywhere
//   24                             the next 24th
//   24 Dec  Dec 24, 2026  1st May  months by their names, or by how those begin, in English and in
//                                  the language of the territory
//   today  tomorrow  fri  Freitag  a weekday is the next one, which is today while the time is
//   ahead Thu, 24 Dec                    a weekday beside a date has to be that date's
//
// A date without its year is the next one. What may mean several dates is not read.
[[nodiscard]] DateReading dateRead(const QString& text, const QLocale& territory,
                                   const QDateTime& now, QTime time);

} // namespace dorvane

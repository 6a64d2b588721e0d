// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>

namespace dorvane {

// Dates are written in English, as all other texts are, whatever the language of the desktop.
[[nodiscard]] QLocale dateLanguage();

// Whether times of day have twelve hours and a mark such as AM where the user is.
[[nodiscard]] bool usesTwelveHourClock(const QLocale& territory);

// Time of day by the clock of the territory: "7:30" or "7:30 AM".
[[nodiscard]] QString timeString(const QDateTime& date,
                                 const QLocale& territory = QLocale::system());

// Weekday and time of day, for menus, windows and announcements: "Tue, 7:30" or "Tue, 7:30 AM".
[[nodiscard]] QString shortDayTimeString(const QDateTime& date,
                                         const QLocale& territory = QLocale::system());

// The same, or the date where the weekday would be taken for a nearer one, more than six days from
// now.
[[nodiscard]] QString dayTimeString(const QDateTime& date, const QDateTime& now,
                                    const QLocale& territory = QLocale::system());

// The date and time of day, with the year where that is another: "24 Dec, 18:00".
[[nodiscard]] QString dateTimeString(const QDateTime& date, const QDateTime& now,
                                     const QLocale& territory = QLocale::system());

// The moment `seconds` after `date`.
[[nodiscard]] QDateTime calendarDateWithTimeInterval(double seconds, const QDateTime& date);

// The nearest multiple of five minutes, with no seconds: minutes that end in 3 or 4 (8 or 9) go up,
// whatever the seconds.
[[nodiscard]] QDateTime calendarDateRoundedTo5(const QDateTime& date);

// Whether both fall on the same calendar day.
[[nodiscard]] bool isSameDay(const QDateTime& a, const QDateTime& b);

} // namespace dorvane

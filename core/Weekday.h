// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DateHelpers.h"

#include <QDate>
#include <QLocale>
#include <QString>

#include <array>
#include <initializer_list>
#include <optional>

namespace dorvane {

// The days of the week by their codes: 101 is Monday, 107 is Sunday.
enum class Weekday : int { Monday = 101, Tuesday, Wednesday, Thursday, Friday, Saturday, Sunday };

// After Sunday comes Monday.
[[nodiscard]] constexpr Weekday nextWeekday(Weekday day) {
    return day == Weekday::Sunday ? Weekday::Monday : Weekday(int(day) + 1);
}

inline constexpr std::array everyWeekday{Weekday::Monday,   Weekday::Tuesday, Weekday::Wednesday,
                                         Weekday::Thursday, Weekday::Friday,  Weekday::Saturday,
                                         Weekday::Sunday};

// "Monday".
[[nodiscard]] QString englishName(Weekday day);

// The day's name in the locale's language: in that of the program's dates.
[[nodiscard]] QString weekdayName(QDate date, const QLocale& locale = dateLanguage());

// The day of an English name; nothing for any other text. Weekday alarms find today by its name: in
// another language than English no day would be found, and they would not be moved on to another
// day. That is meant; the program's dates speak English everywhere.
[[nodiscard]] std::optional<Weekday> weekdayNamed(const QString& name);

// A set of days.
class WeekdaySet {
public:
    constexpr WeekdaySet() = default;
    constexpr WeekdaySet(std::initializer_list<Weekday> days) {
        for (const Weekday day : days)
            m_bits |= bit(day);
    }

    [[nodiscard]] constexpr bool contains(Weekday day) const { return (m_bits & bit(day)) != 0; }
    [[nodiscard]] constexpr bool isEmpty() const { return m_bits == 0; }
    constexpr void set(Weekday day, bool on) {
        m_bits = on ? (m_bits | bit(day)) : (m_bits & ~bit(day));
    }

    friend constexpr bool operator==(WeekdaySet, WeekdaySet) = default;

private:
    static constexpr unsigned bit(Weekday day) { return 1u << (int(day) - int(Weekday::Monday)); }

    unsigned m_bits = 0;
};

} // namespace dorvane

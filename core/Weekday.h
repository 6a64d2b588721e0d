// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

#include <initializer_list>
#include <optional>

namespace dorvane {

// The days of the week by their codes: 101 is Monday, 107 is Sunday.
enum class Weekday : int { Monday = 101, Tuesday, Wednesday, Thursday, Friday, Saturday, Sunday };

// After Sunday comes Monday.
[[nodiscard]] constexpr Weekday nextWeekday(Weekday day) {
    return day == Weekday::Sunday ? Weekday::Monday : Weekday(int(day) + 1);
}

// The day's name in the locale's language.
[[nodiscard]] QString weekdayName(QDate date, const QLocale& locale = QLocale::system());

// The day of an English name; nothing for any other text. Weekday alarms find today by its name in
// the user's language, so that in another language than English no day is found: they are then not
// moved on to another day. That is meant.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenWeekdays.h"

#include "core/WrittenDate.h"

#include <QMap>
#include <QRegularExpression>

namespace dorvane {

namespace {

std::optional<WeekdaySet> daysBetween(const QString& part, const QLocale& territory) {
    static const QMap<QString, std::pair<Weekday, Weekday>> names{
        {QStringLiteral("weekdays"), {Weekday::Monday, Weekday::Friday}},
        {QStringLiteral("weekend"), {Weekday::Saturday, Weekday::Sunday}},
        {QStringLiteral("weekends"), {Weekday::Saturday, Weekday::Sunday}},
        {QStringLiteral("daily"), {Weekday::Monday, Weekday::Sunday}}};
    const QStringList ends = part.split(u'-');
    std::optional<Weekday> first = weekdayRead(ends.first(), territory);
    std::optional<Weekday> last = weekdayRead(ends.last(), territory);
    if (const auto named = names.constFind(part.toCaseFolded()); named != names.cend())
        std::tie(first, last) = *named;
    if (!first || !last || ends.size() > 2)
        return std::nullopt;
    WeekdaySet days{*last};
    for (Weekday day = *first; day != *last; day = nextWeekday(day))
        days.set(day, true);
    return days;
}

} // namespace

std::optional<WeekdaySet> weekdaysRead(const QString& text, const QLocale& territory) {
    static const QRegularExpression dash(QStringLiteral("\\s*[-–]\\s*"));
    static const QRegularExpression gap(QStringLiteral("(?:[\\s,;+&]|\\band\\b)+"));
    WeekdaySet all;
    for (const QString& part :
         QString(text).replace(dash, QStringLiteral("-")).split(gap, Qt::SkipEmptyParts)) {
        const std::optional<WeekdaySet> days = daysBetween(part, territory);
        if (!days)
            return std::nullopt;
        for (const Weekday day : everyWeekday)
            all.set(day, all.contains(day) || days->contains(day));
    }
    return all.isEmpty() ? std::nullopt : std::optional(all);
}

QStringList weekdayKeys(WeekdaySet days) {
    QStringList keys;
    for (const Weekday day : everyWeekday)
        if (days.contains(day))
            keys << englishName(day).left(3).toLower();
    return keys;
}

} // namespace dorvane

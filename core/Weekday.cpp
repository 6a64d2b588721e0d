// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Weekday.h"

namespace dorvane {

QString weekdayName(QDate date, const QLocale& locale) {
    return locale.toString(date, QStringLiteral("dddd"));
}

QString englishName(Weekday day) {
    return QLocale::c().dayName(int(day) - int(Weekday::Monday) + Qt::Monday);
}

std::optional<Weekday> weekdayNamed(const QString& name) {
    for (const Weekday day : everyWeekday)
        if (name == englishName(day))
            return day;
    return std::nullopt;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Weekday.h"

#include <array>

namespace dorvane {

QString weekdayName(QDate date, const QLocale& locale) {
    return locale.toString(date, QStringLiteral("dddd"));
}

std::optional<Weekday> weekdayNamed(const QString& name) {
    static constexpr std::array names{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                      "Friday", "Saturday", "Sunday"};
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == QLatin1String(names[i]))
            return Weekday(int(Weekday::Monday) + int(i));
    return std::nullopt;
}

} // namespace dorvane

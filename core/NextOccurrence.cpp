// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/NextOccurrence.h"

#include "core/LocalTime.h"

namespace dorvane {

int daysToNextTicked(Weekday from, int offset, WeekdaySet ticked) {
    Q_ASSERT(!ticked.isEmpty());
    while (!ticked.contains(from)) {
        from = nextWeekday(from);
        ++offset;
    }
    return offset;
}

std::optional<QDateTime> calculateNextDate(Weekday tomorrow, WeekdaySet ticked, QTime timeOfDay,
                                           QDate today) {
    if (ticked.isEmpty())
        return std::nullopt;
    return localMoment(today.addDays(daysToNextTicked(tomorrow, 1, ticked)),
                       QTime(timeOfDay.hour(), timeOfDay.minute()));
}

QDateTime firstWeekdayDate(WeekdaySet ticked, const QDateTime& timeToday, const QDateTime& now,
                           const QString& todaysName) {
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    if (ticked.isEmpty() || !today)
        return timeToday;
    const bool missedToday = ticked.contains(*today) && timeToday < now;
    const int days = missedToday ? daysToNextTicked(nextWeekday(*today), 1, ticked)
                                 : daysToNextTicked(*today, 0, ticked);
    return addingDays(timeToday, days);
}

} // namespace dorvane

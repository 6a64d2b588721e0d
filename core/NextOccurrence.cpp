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

// Each day has its own moment of that time: today's may be one that this night has moved.
QDateTime firstWeekdayDate(WeekdaySet ticked, QTime timeOfDay, const QDateTime& now,
                           const QString& todaysName) {
    const auto daysAhead = [&, time = QTime(timeOfDay.hour(), timeOfDay.minute())](int days) {
        return localMomentAfter(now.date().addDays(days), time, now);
    };
    const std::optional<Weekday> today = weekdayNamed(todaysName);
    if (ticked.isEmpty() || !today)
        return daysAhead(0);
    const bool missedToday = ticked.contains(*today) && daysAhead(0) < now;
    return daysAhead(missedToday ? daysToNextTicked(nextWeekday(*today), 1, ticked)
                                 : daysToNextTicked(*today, 0, ticked));
}

} // namespace dorvane

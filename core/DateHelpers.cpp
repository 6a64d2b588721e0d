// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DateHelpers.h"

#include <cmath>

namespace dorvane {

QLocale dateLanguage() {
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

bool usesTwelveHourClock(const QLocale& territory) {
    return territory.timeFormat(QLocale::ShortFormat)
        .contains(QLatin1Char('a'), Qt::CaseInsensitive);
}

QString timeString(const QDateTime& date, const QLocale& territory) {
    return dateLanguage().toString(date, usesTwelveHourClock(territory) ? QStringLiteral("h:mm AP")
                                                                        : QStringLiteral("H:mm"));
}

QString shortDayTimeString(const QDateTime& date, const QLocale& territory) {
    return dateLanguage().toString(date, QStringLiteral("ddd, ")) + timeString(date, territory);
}

QString dayTimeString(const QDateTime& date, const QDateTime& now, const QLocale& territory) {
    constexpr int aWeekday = 6;
    if (qAbs(now.date().daysTo(date.date())) <= aWeekday)
        return shortDayTimeString(date, territory);
    return dateTimeString(date, now, territory);
}

QString dateTimeString(const QDateTime& date, const QDateTime& now, const QLocale& territory) {
    const QString day = date.date().year() == now.date().year() ? QStringLiteral("d MMM, ")
                                                                : QStringLiteral("d MMM yyyy, ");
    return dateLanguage().toString(date, day) + timeString(date, territory);
}

QDateTime calendarDateWithTimeInterval(double seconds, const QDateTime& date) {
    return date.addMSecs(std::llround(seconds * 1000.0));
}

QDateTime calendarDateRoundedTo5(const QDateTime& date) {
    const QTime time = date.time();
    const int past = time.minute() % 5;
    const int minutes = (past < 3 ? 0 : 5) - past;
    return date.addMSecs((minutes * 60 - time.second()) * 1000 - time.msec());
}

bool isSameDay(const QDateTime& a, const QDateTime& b) {
    return a.date() == b.date();
}

} // namespace dorvane

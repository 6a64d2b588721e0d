// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DateHelpers.h"

#include <cmath>

namespace dorvane {

bool usesTwelveHourClock(const QLocale& locale) {
    return locale.timeFormat(QLocale::ShortFormat).contains(QLatin1Char('a'), Qt::CaseInsensitive);
}

QString shortDayTimeString(const QDateTime& date, const QLocale& locale) {
    return locale.toString(date, usesTwelveHourClock(locale) ? QStringLiteral("ddd, h:mm AP")
                                                             : QStringLiteral("ddd, H:mm"));
}

QString dayTimeString(const QDateTime& date, const QDateTime& now, const QLocale& locale) {
    constexpr int aWeekday = 6;
    if (now.date().daysTo(date.date()) <= aWeekday)
        return shortDayTimeString(date, locale);
    QString format = QStringLiteral("ddd, d MMM");
    if (date.date().year() != now.date().year())
        format += QStringLiteral(" yyyy");
    format += usesTwelveHourClock(locale) ? QStringLiteral(", h:mm AP") : QStringLiteral(", H:mm");
    return locale.toString(date, format);
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

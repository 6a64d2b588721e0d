// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <string>

namespace dorvane::testing {

// "2026-03-29 02:30:00" (or without seconds) is local time, "2026-03-29T01:30:00Z" is not. Without
// the year it is 2026: "03-29 02:30".
inline QDateTime at(const char* text) {
    QString string = QString::fromLatin1(text);
    if (string.indexOf(u'-') == 2)
        string.prepend(QLatin1String("2026-"));
    QDateTime date = QDateTime::fromString(string, Qt::ISODate);
    Q_ASSERT(date.isValid());
    return date;
}

// The same without what at() adds, and with whole hours of the offset, so that the two readings of
// a doubled hour differ: "03-29 03:30+02".
inline std::string brief(const QDateTime& date) {
    if (!date.isValid())
        return "none";
    QString format = u"MM-dd HH:mm"_qs;
    if (date.date().year() != 2026)
        format.prepend(QLatin1String("yyyy-"));
    if (date.time().second() != 0)
        format += QLatin1String(":ss");
    return date.toString(format).toStdString() +
           QString::asprintf("%+03d", date.offsetFromUtc() / 3600).toStdString();
}

} // namespace dorvane::testing

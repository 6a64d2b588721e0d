// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLatin1String>
#include <QTimeZone>

namespace dorvane::archive {

// The fixed words of the keyed-archive format.
inline constexpr QLatin1String archiver("$archiver");
inline constexpr QLatin1String archiverName("NSKeyedArchiver");
inline constexpr QLatin1String version("$version");
inline constexpr qint64 versionNumber = 100000;
inline constexpr QLatin1String top("$top");
inline constexpr QLatin1String root("root");
inline constexpr QLatin1String objects("$objects");
inline constexpr QLatin1String null("$null");
inline constexpr QLatin1String classOf("$class");
inline constexpr QLatin1String className("$classname");
inline constexpr QLatin1String classes("$classes");
inline constexpr QLatin1String listObjects("NS.objects");
inline constexpr QLatin1String dateTime("NS.time");
inline constexpr QLatin1String text("NS.string");

// Dates are seconds from this moment.
inline QDateTime epoch() {
    return QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
}

} // namespace dorvane::archive

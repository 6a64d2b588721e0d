// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <string>

namespace dorvane::testing {

// "2026-03-29 02:30:00" (or without seconds) is local time, "2026-03-29T01:30:00Z" is not.
inline QDateTime at(const char* text) {
    const QDateTime date = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
    Q_ASSERT(date.isValid());
    return date;
}

// With the offset, so that the two readings of a doubled hour differ: "2026-03-29T03:30:00+02:00".
inline std::string text(const QDateTime& date) {
    return date.isValid()
               ? date.toOffsetFromUtc(date.offsetFromUtc()).toString(Qt::ISODate).toStdString()
               : "none";
}

} // namespace dorvane::testing

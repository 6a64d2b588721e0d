// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

#include <QDateTime>

#include <cmath>

// The two formats of property lists, see PropertyListFormat, and what they have in common. Any
// thread.
namespace dorvane {

// Whether the data is marked as the binary format.
[[nodiscard]] bool isBinaryPropertyList(QByteArrayView data);
[[nodiscard]] std::optional<QVariant> readBinaryPropertyList(QByteArrayView data);
[[nodiscard]] std::optional<QByteArray> writeBinaryPropertyList(const QVariant& root);

// Preferences that somebody has written by hand or brought along.
[[nodiscard]] std::optional<QVariant> readXmlPropertyList(QByteArrayView data);

struct PropertyListLimits {
    static constexpr int depth = 64;
    // Ten thousand alarms are less than a million nodes and about five million bytes of text.
    static constexpr quint64 nodes = 2'000'000;
    static constexpr qint64 bytes = 64 * 1024 * 1024;
};

// Dates count from here.
[[nodiscard]] inline QDateTime propertyListEpoch() {
    return QDateTime::fromMSecsSinceEpoch(978'307'200'000).toUTC(); // 2001-01-01
}

// What lies beyond all calendars, or is no number, becomes a date that can be written again.
[[nodiscard]] inline QDateTime propertyListDate(double seconds) {
    constexpr double farthest = 7990.0 * 365 * 86400; // to the year 9985
    const double bounded = std::fmin(std::fmax(seconds, -farthest), farthest);
    return propertyListEpoch().addMSecs(std::llround(bounded * 1000));
}

// A dictionary as it was read. The XML format has no other way to write a reference.
[[nodiscard]] inline QVariant propertyListDictionary(const QVariantMap& map) {
    const QVariant uid = map.size() == 1 ? map.value(QStringLiteral("CF$UID")) : QVariant();
    if (uid.typeId() == QMetaType::LongLong && uid.toLongLong() >= 0)
        return QVariant::fromValue(PropertyListUid{uid.toULongLong()});
    return map;
}

} // namespace dorvane

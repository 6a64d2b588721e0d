// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace dorvane {

// Where the C library looks for the zone.
struct ZoneSources {
    std::optional<QByteArray> variable;              // TZ
    QString link = QStringLiteral("/etc/localtime"); // without TZ
    QString name = QStringLiteral("/etc/timezone");  // where there is no link
    QString folder = QStringLiteral("/usr/share/zoneinfo");

    [[nodiscard]] static ZoneSources ofThisProcess();
};

// The name of the zone that is set although its data is not there, so that every time silently is
// UTC; nothing when all is well or when UTC is what is meant.
[[nodiscard]] std::optional<QString> zoneWithoutData(const ZoneSources& sources);

} // namespace dorvane

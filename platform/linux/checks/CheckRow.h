// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusArgument>
#include <QList>
#include <QString>

namespace dorvane {

// A check as it travels over the bus: (ssss).
struct CheckRow {
    QString name;
    QString status; // "fine", "warning", "failure"
    QString line;
    QString advice;
};
using CheckRows = QList<CheckRow>;

QDBusArgument& operator<<(QDBusArgument& argument, const CheckRow& row);
const QDBusArgument& operator>>(const QDBusArgument& argument, CheckRow& row);

} // namespace dorvane

Q_DECLARE_METATYPE(dorvane::CheckRow)

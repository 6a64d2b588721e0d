// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace dorvane {

// What the terminal shows of alarms, which are given as docs/bus.md describes them: functions on
// values.

// "in 25 min", for the seconds until something.
[[nodiscard]] QString timeLeft(qint64 seconds);

// "18:25" for a moment of today, with its day for any other.
[[nodiscard]] QString shortMoment(const QDateTime& moment, const QDateTime& now);

// The cells of a running alarm: identity, when, how far off, title, how it repeats.
[[nodiscard]] QStringList runningCells(const QVariantMap& alarm, const QDateTime& now);

// The cells of a stored alarm: title, when, how it repeats.
[[nodiscard]] QStringList storedCells(const QVariantMap& alarm, const QDateTime& now);

// Rows with their cells below each other.
[[nodiscard]] QStringList aligned(const std::vector<QStringList>& rows);

// The line and the dictionary of `dorvane status`.
struct StatusReport {
    QString line;
    QVariantMap json;
};
// What the properties of the bus tell of the breaks: "break at 12:25", "break until 12:30", "break
// when you are back"; empty while they are off.
[[nodiscard]] QString breakText(const QVariantMap& properties);
// The same with how far off it is: "break at 12:25, in 12 min".
[[nodiscard]] QString nextBreak(const QVariantMap& properties, const QDateTime& now);

[[nodiscard]] StatusReport statusReport(const QVariantList& alarms, const QVariantMap& properties,
                                        const QDateTime& now);
[[nodiscard]] StatusReport stoppedReport(const QString& reason);

} // namespace dorvane

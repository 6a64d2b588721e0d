// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <chrono>

namespace dorvane {

// The units of the user's service manager that start the announcer. Functions on values.

// How this process is called, for another one that is to find the same files.
struct AnnouncerCommand {
    QString program;         // its full path
    QStringList environment; // NAME=value
};

// For the program of this bundle: of the environment of this process what decides which files it
// reads, and how it writes and counts times.
[[nodiscard]] AnnouncerCommand announcerCommand(const QString& bundlePath);

// A timer that the manager holds in memory, and the service that it starts, are called so with
// ".timer" and ".service" after it. Of two of one machine's run the greater name is the later one.
[[nodiscard]] QString announcerName(std::chrono::milliseconds sinceBoot);
inline const QString everyAnnouncerTimer =
    QStringLiteral("com.brackenfold.Dorvane.announce-*.timer");

// A moment as the manager wants it.
[[nodiscard]] QString calendarOf(const QDateTime& moment);

// The service that arms the timer anew after a login, as a file.
inline const QString loginService = QStringLiteral("com.brackenfold.Dorvane.announce.service");
[[nodiscard]] QByteArray loginUnit(const AnnouncerCommand& command);

// Whether a unit of this name and contents is one that earlier versions wrote: they had a timer for
// each alarm, a service for all of them, and a target.
[[nodiscard]] bool isUnitOfEarlierVersions(const QString& name, const QByteArray& contents);

} // namespace dorvane

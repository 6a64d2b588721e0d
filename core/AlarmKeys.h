// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The keys under which other programs describe alarms, and are told of them; see docs/bus.md.
namespace dorvane::key {

inline const QString title = QStringLiteral("title");
inline const QString minutes = QStringLiteral("minutes");
inline const QString seconds = QStringLiteral("seconds");
inline const QString hours = QStringLiteral("hours");
inline const QString repeat = QStringLiteral("repeat");
inline const QString time = QStringLiteral("time");
inline const QString date = QStringLiteral("date");
inline const QString everyDay = QStringLiteral("every-day");
inline const QString weekdays = QStringLiteral("weekdays");
inline const QString everyWeek = QStringLiteral("every-week");
inline const QString sound = QStringLiteral("sound");
inline const QString fade = QStringLiteral("fade");
inline const QString untilAnswered = QStringLiteral("until-answered");
inline const QString softly = QStringLiteral("softly");
inline const QString voice = QStringLiteral("voice");
inline const QString snooze = QStringLiteral("snooze");
inline const QString store = QStringLiteral("store");

// Told only.
inline const QString identity = QStringLiteral("id");
inline const QString due = QStringLiteral("due");
inline const QString ringing = QStringLiteral("ringing");
inline const QString paused = QStringLiteral("paused");
inline const QString snoozed = QStringLiteral("snoozed");

} // namespace dorvane::key

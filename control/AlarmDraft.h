// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Weekday.h"
#include "platform/RemoteControl.h"

#include <QTime>
#include <QVariantMap>

#include <optional>

namespace dorvane {

// The longest texts that are taken, in characters.
inline constexpr qsizetype longestTitle = 1000;
inline constexpr qsizetype longestName = 4096;

// What a description says of an alarm, and nothing that it does not.
struct AlarmDraft {
    std::optional<QString> title, sound, voice;
    std::optional<qint64> seconds, minutes, hours, snooze;
    std::optional<QTime> time;
    std::optional<QString> date; // which day it means depends on the time
    bool isDateKept = false;     // it is the one that the alarm had
    std::optional<WeekdaySet> weekdays;
    std::optional<bool> repeat, everyDay, everyWeek, fade, untilAnswered, softly, store;
};

// Reads what a description says, each key by itself; see docs/bus.md.
[[nodiscard]] Outcome readInto(AlarmDraft& draft, const QVariantMap& description);

// What was said that says nothing of an alarm of this kind.
[[nodiscard]] Outcome conflictIn(const AlarmDraft& draft);

// A refusal that names the key which it is about.
[[nodiscard]] Outcome keyRefusal(const char* name, const QString& key, const QString& reason);
[[nodiscard]] Outcome invalidKey(const QString& key, const QString& reason);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmForm.h"

#include <QDateTime>
#include <QLocale>

#include <chrono>
#include <optional>

namespace dorvane {

// How a whole alarm is written in one line: a function on text.

struct WrittenAlarm {
    AlarmForm form;
    std::chrono::seconds counted{0}; // of a relative one, how long it has counted when it is set
};

// When, and then what for, which may be left out; lengths, times, dates and days as elsewhere.
// Nothing for any other text. The sound and the snooze are those of the defaults.
//
//   25  25 tea  1h30 bread  in 30s  after so long
//   7:30  7 pm dinner  at 7         when the clock shows it next; a number alone is minutes
//   tomorrow 7 gym  24 Dec at 18:00 on a date
//   mon-fri 7:15 work               on these days of every week
[[nodiscard]] std::optional<WrittenAlarm> alarmRead(const QString& text, const QLocale& territory,
                                                    const QDateTime& now,
                                                    const RingDefaults& defaults);

} // namespace dorvane

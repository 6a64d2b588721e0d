// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"

#include <QLocale>
#include <QString>

namespace dorvane {

class Alarm;

// What lists say of an alarm. The locale is of the territory whose clock is used.

// "30 min", "1 hour": of one that counts.
[[nodiscard]] QString lengthText(const Alarm& alarm);

// When a running alarm rings next: "Tue, 7:30", "24 Dec, 18:00", "Paused".
[[nodiscard]] QString dueText(const Alarm& alarm, Instant now, const QLocale& territory);

// What an alarm of the library is chosen by: how long it takes, or when it would ring.
[[nodiscard]] QString storedText(const Alarm& alarm, Instant now, const QLocale& territory);

// "every day", "Mon Thu, every week", "every 30 min"; empty for one that rings once.
[[nodiscard]] QString repetitionText(const Alarm& alarm);

} // namespace dorvane

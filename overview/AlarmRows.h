// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QLocale>

#include <optional>
#include <vector>

namespace dorvane {

// An alarm in the list of all alarms: a running one, or one of the library that does not run.
struct AlarmRow {
    AlarmPtr alarm;
    AlarmPtr stored;      // its entry of the library; null where there is none
    bool isOn = false;    // it runs
    bool canSkip = false; // see canSkip()
    std::optional<Instant> moment;
    QString title;
    QString next;
    QString repeats;
    QString sound;

    // What tells it from the others, also after the lists were read anew.
    [[nodiscard]] QString key() const;
};

// What runs by its next ring, then what is only stored by when it would ring. Timers of the menu,
// of which the library keeps the lengths, are listed while they run.
[[nodiscard]] std::vector<AlarmRow> alarmRows(const std::vector<AlarmPtr>& running,
                                              const std::vector<AlarmPtr>& stored, Instant now,
                                              const QLocale& territory);

// Whether each of the words is somewhere in the row's texts.
[[nodiscard]] bool matches(const AlarmRow& row, const QString& words);

} // namespace dorvane

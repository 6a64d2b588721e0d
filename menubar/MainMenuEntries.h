// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"
#include "menubar/MenuEntry.h"

#include <QLocale>

#include <optional>
#include <vector>

namespace dorvane {

// All that the main menu shows.
struct MainMenuState {
    std::vector<AlarmPtr> alarms; // running, in the order of the clock's list
    // The stored alarms; nothing when there is no store, empty when it cannot be read.
    std::optional<std::vector<AlarmPtr>> storedAlarms;
    bool breaksRun = false;
    bool showsBreaks = true;                 // whether there is an entry for them
    QString nextBreak = {};                  // when the next one comes; may be empty
    std::optional<Instant> pausedUntil = {}; // see AlarmPause
    QString noAlarmString;                   // shown when no alarm runs, instead of "No Alarms"
    Instant now;
    QLocale locale; // of the territory whose clock is used
};

// The main menu.
[[nodiscard]] std::vector<MenuEntry> mainMenuEntries(const MainMenuState& state);

} // namespace dorvane

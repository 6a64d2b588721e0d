// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <functional>

namespace dorvane {

// What the entries of the main menu do. An empty function means that the command is not there: its
// entries are disabled. Called from the event loop, after the menu has closed.
struct MenuCommands {
    std::function<void()> createAlarm;
    std::function<void()> showAlarms;
    std::function<void(int minutes)> createPreAlarm;
    std::function<void()> quick;
    std::function<void(const AlarmPtr& alarm)> editAlarm;
    std::function<void(const AlarmPtr& alarm)> clearFromMenu;
    std::function<void(const AlarmPtr& alarm)> saveFromMenu;
    std::function<void(const AlarmPtr& alarm)> deleteAlarm;
    std::function<void(const AlarmPtr& alarm)> setAlarm;
    std::function<void()> clearAll;
    std::function<void(const AlarmPtr& alarm)> skipNext;
    // For so many days, today as the first; 0 for until it is resumed.
    std::function<void(int days)> pauseAlarms;
    std::function<void()> resumeAlarms;
    std::function<void()> createRespito;
    std::function<void()> startRespito;
    std::function<void()> stopRespito;
    std::function<void()> openPrefs;
    std::function<void()> showGoogleHelp;
    std::function<void()> terminate;
};

} // namespace dorvane

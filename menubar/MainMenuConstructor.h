// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakOutlook.h"
#include "core/Coalescer.h"
#include "menubar/MainMenuEntries.h"
#include "menubar/MenuCommands.h"
#include "menubar/MenuRows.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <QPointer>

#include <optional>

namespace dorvane {

class Clock;
class StatusItem;
class StatusMenu;

// What the menu shows beyond the clock's list, asked for each time it is built. Each may be
// empty: then there is no store, and no breaks run.
struct MenuSources {
    std::function<std::optional<std::vector<AlarmPtr>>()> storedAlarms;
    std::function<bool()> breaksRun;
    std::function<BreakOutlook()> breakOutlook = {};
    std::function<bool()> showsBreaks = {}; // empty: the menu has their entry
    std::function<std::optional<Instant>()> pausedUntil = {};
};

// Builds the main menu, twice: our own pop-up, and the one that a panel draws. Main thread only.
class MainMenuConstructor {
public:
    // The references must outlive the constructor; the application object must exist.
    MainMenuConstructor(RunLoop& runLoop, Clock& clock, NotificationCenter& notifications,
                        StatusItem& item, MenuSources sources, MenuCommands commands,
                        const QLocale& locale = QLocale::system());
    ~MainMenuConstructor();
    MainMenuConstructor(const MainMenuConstructor&) = delete;
    MainMenuConstructor& operator=(const MainMenuConstructor&) = delete;

    // Brings the pop-up up to date at once, unless it is open, and the panel's menu soon.
    void constructMenu();
    void updatePanelMenuSoon() { m_updateSoon.request(); }

    // Our own pop-up. Not owned.
    [[nodiscard]] StatusMenu* objectMenu() const;
    void setObjectMenu(StatusMenu* menu);

    // Shown when no alarm runs; "No Alarms" when it is empty.
    [[nodiscard]] const QString& noAlarmString() const { return m_noAlarmString; }
    void setNoAlarmString(const QString& text) { m_noAlarmString = text; }

private:
    [[nodiscard]] MainMenuState state(Instant now) const;
    void updatePanelMenu();
    RunLoop& m_runLoop;
    Clock& m_clock;
    StatusItem& m_item;
    MenuSources m_sources;
    MenuCommands m_commands;
    QLocale m_locale;
    QString m_noAlarmString;

    QPointer<StatusMenu> m_objectMenu;
    std::optional<MenuRows> m_objectRows;

    Coalescer m_updateSoon;
    NotificationCenter::Observation m_alarmsObservation;
    NotificationCenter::Observation m_storedAlarmsObservation;
    NotificationCenter::Observation m_breakSettingsObservation;
    NotificationCenter::Observation m_breaksObservation;
};

} // namespace dorvane

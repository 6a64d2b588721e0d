// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MainMenuEntries.h"

#include "core/AlarmPause.h"
#include "core/AlarmText.h"
#include "core/DateHelpers.h"
#include "core/Rearm.h"

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

using Entries = std::vector<MenuEntry>;

// Never looks at what came before: two separators in a row are meant as a wider gap.
void insertSeparator(Entries& entries) {
    MenuEntry separator;
    separator.isSeparator = true;
    entries.push_back(std::move(separator));
}

MenuEntry makeEntry(const char* title, MenuEntry::Command command = {}) {
    MenuEntry entry;
    entry.title = QLatin1String(title);
    entry.command = command;
    return entry;
}

MenuEntry alarmEntry(const char* title, std::function<void(const AlarmPtr&)> MenuCommands::*command,
                     const AlarmPtr& alarm) {
    MenuEntry entry = makeEntry(title, command);
    entry.alarm = alarm;
    return entry;
}

// The plural begins at one: "In 1 mins at", and "In 0 min at" in the last minute. That is how
// the text has always read, and it is kept.
QString countdownText(const Alarm& alarm, const MainMenuState& state) {
    const qint64 minutes = alarm.secondsFromNow(state.now) / 60;
    const QString clockTime = timeString(alarm.time(state.now), state.locale);
    return (minutes > 0 ? QStringLiteral("In %1 mins at %2") : QStringLiteral("In %1 min at %2"))
        .arg(QString::number(minutes), clockTime);
}

void buildWorkingAlarms(Entries& entries, const MainMenuState& state) {
    entries.push_back(makeEntry("Active alarms:"));
    if (state.alarms.empty()) {
        entries.push_back(makeEntry("No Alarms"));
        if (!state.noAlarmString.isEmpty())
            entries.back().title = state.noAlarmString;
        return;
    }
    for (const AlarmPtr& alarm : state.alarms) {
        MenuEntry entry;
        entry.alarm = alarm;
        if (alarm->isDefaultAlarm() && alarm->due(state.now)) {
            entry.title = countdownText(*alarm, state);
        } else {
            entry.title = dueText(*alarm, state.now, state.locale);
            entry.subtitle = alarm->title();
        }
        entry.children.push_back(alarmEntry("Edit...", &MenuCommands::editAlarm, alarm));
        entry.children.push_back(alarmEntry("Clear", &MenuCommands::clearFromMenu, alarm));
        // A timer is one click away: there is nothing to save.
        if (!alarm->isDefaultAlarm())
            entry.children.push_back(alarmEntry("Save", &MenuCommands::saveFromMenu, alarm));
        entry.children.push_back(alarmEntry("Delete", &MenuCommands::deleteAlarm, alarm));
        if (canSkip(*alarm, state.now))
            entry.children.push_back(alarmEntry("Skip next", &MenuCommands::skipNext, alarm));
        entries.push_back(std::move(entry));
    }
    // As in the windows of the alarms: a few are answered one by one.
    const auto isRinging = [](const AlarmPtr& alarm) { return alarm->isTriggered(); };
    if (std::count_if(state.alarms.begin(), state.alarms.end(), isRinging) >= 3)
        entries.push_back(makeEntry("Clear all that ring", &MenuCommands::clearAll));
}

void buildPredefinedAlarms(Entries& entries) {
    MenuEntry timers = makeEntry("Timer...");
    for (const int minutes : {1, 2, 3, 4, 5, 10, 15, 20, 30, 45}) {
        MenuEntry entry;
        entry.title = QStringLiteral("%1 min").arg(minutes);
        entry.command = &MenuCommands::createPreAlarm;
        entry.number = minutes;
        timers.children.push_back(std::move(entry));
    }
    timers.children.push_back(makeEntry("Other...", &MenuCommands::quick));
    entries.push_back(std::move(timers));
}

void buildStoredAlarms(Entries& entries, const MainMenuState& state) {
    if (!state.storedAlarms)
        return;
    insertSeparator(entries); // the second in a row
    // The heading stands even over nothing: it tells that there is a store.
    entries.push_back(makeEntry("Inactive alarms:"));
    for (const AlarmPtr& alarm : *state.storedAlarms) {
        if (!alarm->isExisInActiveAlarmList())
            continue;
        MenuEntry entry;
        entry.title = storedText(*alarm, state.now, state.locale);
        entry.subtitle = alarm->title();
        entry.command = alarm->due(state.now) ? &MenuCommands::setAlarm : &MenuCommands::editAlarm;
        entry.alarm = alarm;
        entry.children.push_back(alarmEntry("Edit...", &MenuCommands::editAlarm, alarm));
        entry.children.push_back(alarmEntry("Delete", &MenuCommands::deleteAlarm, alarm));
        entries.push_back(std::move(entry));
    }
}

void buildBreaks(Entries& entries, const MainMenuState& state) {
    MenuEntry breaks = makeEntry("Respito...");
    breaks.subtitle = state.nextBreak;
    breaks.children.push_back(state.breaksRun ? makeEntry("Stop", &MenuCommands::stopRespito)
                                              : makeEntry("Start", &MenuCommands::startRespito));
    breaks.children.push_back(makeEntry("Preferences...", &MenuCommands::createRespito));
    entries.push_back(std::move(breaks));
    insertSeparator(entries);
}

MenuEntry pauseEntry(const char* title, int days) {
    MenuEntry entry = makeEntry(title, &MenuCommands::pauseAlarms);
    entry.number = days;
    return entry;
}

void buildPause(Entries& entries, const MainMenuState& state) {
    MenuEntry pause = makeEntry("Pause alarms");
    pause.subtitle = pauseText(state.pausedUntil, localDateTimeOf(state.now), state.locale);
    if (state.pausedUntil)
        pause.children.push_back(makeEntry("Resume", &MenuCommands::resumeAlarms));
    pause.children.push_back(pauseEntry("Until tomorrow", 1));
    pause.children.push_back(pauseEntry("For a week", 7));
    pause.children.push_back(pauseEntry("Until I resume", 0));
    entries.push_back(std::move(pause));
}

void buildSettableAlarms(Entries& entries, const MainMenuState& state) {
    entries.push_back(makeEntry("Create alarm...", &MenuCommands::createAlarm));
    entries.push_back(makeEntry("Alarms...", &MenuCommands::showAlarms));
    buildPause(entries, state);
    insertSeparator(entries);
    buildPredefinedAlarms(entries);
    insertSeparator(entries);
    if (state.showsBreaks)
        buildBreaks(entries, state);
    buildStoredAlarms(entries, state);
}

void buildApplicationPart(Entries& entries) {
    entries.push_back(makeEntry("Preferences...", &MenuCommands::openPrefs));
    entries.push_back(makeEntry("Help...", &MenuCommands::showGoogleHelp));
}

} // namespace

std::vector<MenuEntry> mainMenuEntries(const MainMenuState& state) {
    Entries entries;
    entries.reserve(state.alarms.size() + 16);
    buildWorkingAlarms(entries, state);
    insertSeparator(entries);
    buildSettableAlarms(entries, state);
    insertSeparator(entries); // with no store this is the second in a row
    buildApplicationPart(entries);
    insertSeparator(entries);
    entries.push_back(makeEntry("Quit", &MenuCommands::terminate));
    return entries;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/PanelMenu.h"

#include "core/Isolated.h"
#include "menubar/OneLine.h"

#include <limits>
#include <utility>

namespace dorvane {

namespace {

constexpr int longestSubtitle = 24;

// By characters: the letters are the panel's, and to measure ours would load their fonts.
QString textOf(const MenuEntry& entry) {
    const QString title = oneLine(entry.title, std::numeric_limits<int>::max());
    return entry.subtitle.isEmpty()
               ? title
               : title + u' ' + isolated(oneLine(entry.subtitle, longestSubtitle));
}

// A running alarm is itself whatever its texts say. Those of the library are read anew each time,
// and have unique titles.
void identify(PanelMenuEntry& panelEntry, const MenuEntry& entry) {
    const bool isAlarm = entry.alarm && !entry.children.empty();
    if (!isAlarm)
        panelEntry.key = entry.title;
    else if (std::holds_alternative<std::monostate>(entry.command))
        panelEntry.subject = entry.alarm;
    else
        panelEntry.key = entry.subtitle;
}

} // namespace

std::vector<PanelMenuEntry> panelMenu(const std::vector<MenuEntry>& entries,
                                      const MenuCommands& commands) {
    std::vector<PanelMenuEntry> menu;
    menu.reserve(entries.size());
    for (const MenuEntry& entry : entries) {
        PanelMenuEntry& panelEntry = menu.emplace_back();
        panelEntry.isSeparator = entry.isSeparator;
        panelEntry.text = textOf(entry);
        panelEntry.chosen = commandOf(entry, commands);
        identify(panelEntry, entry);
        panelEntry.isEnabled = panelEntry.chosen || !entry.children.empty();
        if (entry.children.empty())
            continue;
        panelEntry.children = panelMenu(entry.children, commands);
        if (!std::holds_alternative<std::monostate>(entry.command)) {
            PanelMenuEntry action;
            action.text = action.key = QStringLiteral("Set");
            action.chosen = std::exchange(panelEntry.chosen, {});
            action.isEnabled = action.chosen != nullptr;
            panelEntry.children.insert(panelEntry.children.begin(), std::move(action));
        }
    }
    return menu;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuRows.h"

#include "menubar/StatusMenu.h"
#include "sounds/MenuText.h"

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

// Whether the menu has an item of the right kind for every entry; submenus see to themselves.
bool fits(const QMenu& menu, const std::vector<MenuEntry>& entries) {
    const QList<QAction*> items = menu.actions();
    return std::equal(items.begin(), items.end(), entries.begin(), entries.end(),
                      [](const QAction* item, const MenuEntry& entry) {
                          return item->isSeparator() == entry.isSeparator &&
                                 (item->menu() != nullptr) == !entry.children.empty();
                      });
}

} // namespace

MenuRows::MenuRows(StatusMenu& menu, RunLoop& runLoop, MenuCommands commands)
    : m_menu(menu), m_runLoop(runLoop), m_commands(std::move(commands)) {}

void MenuRows::show(const std::vector<MenuEntry>& entries) {
    fill(m_menu, entries);
}

void MenuRows::build(StatusMenu& menu, const std::vector<MenuEntry>& entries) {
    menu.clear();
    qDeleteAll(menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    for (const MenuEntry& entry : entries) {
        auto* item = new MenuItemExtras(m_runLoop, &menu);
        item->setSeparator(entry.isSeparator);
        if (!entry.children.empty())
            item->setMenu(new StatusMenu(menu)); // owned by it
        menu.addAction(item);
    }
}

void MenuRows::fill(StatusMenu& menu, const std::vector<MenuEntry>& entries) {
    if (!fits(menu, entries))
        build(menu, entries);
    const QList<QAction*> items = menu.actions();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const MenuEntry& entry = entries[i];
        if (entry.isSeparator)
            continue;
        auto* item = static_cast<MenuItemExtras*>(items[qsizetype(i)]);
        item->setTitle(entry.title, entry.subtitle, menu.titleFonts());
        item->setText(menuText(item->spokenText()));
        item->setCommand(commandOf(entry, m_commands));
        item->setEnabled(item->hasCommand() || item->menu());
        if (item->menu())
            fill(static_cast<StatusMenu&>(*item->menu()), entry.children);
    }
}

} // namespace dorvane

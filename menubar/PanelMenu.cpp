// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/PanelMenu.h"

#include "menubar/MenuItemExtras.h"
#include "sounds/MenuText.h"

#include <QStyleOptionMenuItem>

namespace dorvane {

PanelMenu::PanelMenu(QWidget* parent) : QMenu(parent) {
    setSeparatorsCollapsible(false); // some stand in a row on purpose
}

QString PanelMenu::busText(QString title) {
    title.replace(u'_', QStringLiteral("__"));
    // The first ampersand becomes an underline that marks the second.
    if (const qsizetype first = title.indexOf(u'&'); first >= 0)
        title.insert(first, u'&');
    return title;
}

void PanelMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
    QMenu::initStyleOption(option, action);
    if (const auto* item = dynamic_cast<const MenuItemExtras*>(action))
        option->text = menuText(item->title() + item->subtitlePart());
}

} // namespace dorvane

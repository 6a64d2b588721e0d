// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

namespace dorvane {

// The copy of the main menu that a panel draws. Its items' texts are written for the menus that
// panels get over the bus; where the old kind of tray lets Qt open the menu here, it shows the
// same.
class PanelMenu final : public QMenu {
public:
    explicit PanelMenu(QWidget* parent = nullptr);

    // A title for the bus. There an underline marks the key of an item, and two stand for one; Qt
    // makes the first ampersand an underline and passes the others on as they stand.
    [[nodiscard]] static QString busText(QString title);

protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;
};

} // namespace dorvane

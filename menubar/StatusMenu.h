// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuItemExtras.h"

#include <QMenu>

#include <memory>
#include <optional>

namespace dorvane {

class RunLoop;
class StatusMenuStyle;

// Our own pop-up, whose items may have a title in two sizes, and an action besides a submenu: a
// click or Return on such an item acts, resting on it or the arrow key opens the submenu. While the
// pop-up is open the run loop tracks events: timers of the default mode stand still.
class StatusMenu final : public QMenu {
public:
    // The run loop must outlive the menu.
    explicit StatusMenu(RunLoop& runLoop);
    // A submenu, owned by its parent.
    explicit StatusMenu(StatusMenu& parent);
    ~StatusMenu() override;

    [[nodiscard]] const MenuTitleFonts& titleFonts() const { return m_fonts; }
    // Whether the desktop has another font for menus by now than when this one was made.
    [[nodiscard]] bool hasOldFonts() const;

protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class EventTracking;

    void noticePointer(const QMouseEvent& event);
    [[nodiscard]] bool performIfParentItem(QAction* action);

    RunLoop& m_runLoop;
    StatusMenu* m_parent = nullptr;
    QFont m_menuFont; // the desktop's
    MenuTitleFonts m_fonts;
    std::shared_ptr<StatusMenuStyle> m_style; // one for all levels
    std::unique_ptr<EventTracking> m_tracking;
    bool m_mouseDown = false;
    QPoint m_pointerWhenShown;  // on the screen
    bool m_pointerCame = false; // from there to a row
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusMenu.h"

#include "menubar/StatusMenuStyle.h"
#include "platform/RunLoop.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionMenuItem>

namespace dorvane {

class StatusMenu::EventTracking {
public:
    explicit EventTracking(RunLoop& runLoop) : m_runLoop(runLoop) {
        m_runLoop.beginEventTracking();
    }
    ~EventTracking() { m_runLoop.endEventTracking(); }
    EventTracking(const EventTracking&) = delete;
    EventTracking& operator=(const EventTracking&) = delete;

private:
    RunLoop& m_runLoop;
};

StatusMenu::StatusMenu(RunLoop& runLoop)
    : m_runLoop(runLoop)
    , m_menuFont(QApplication::font("QMenu"))
    , m_fonts(MenuTitleFonts::of(m_menuFont))
    , m_style(std::make_shared<StatusMenuStyle>(m_fonts)) {
    setStyle(m_style.get());
    setFont(m_fonts.title);          // plain titles stand among those with a subtitle
    setSeparatorsCollapsible(false); // some stand in a row on purpose
}

StatusMenu::StatusMenu(StatusMenu& parent)
    : QMenu(&parent)
    , m_runLoop(parent.m_runLoop)
    , m_parent(&parent)
    , m_fonts(parent.m_fonts)
    , m_style(parent.m_style) {
    setStyle(m_style.get());
    setFont(m_fonts.title);
}

StatusMenu::~StatusMenu() = default;

bool StatusMenu::hasOldFonts() const {
    return QApplication::font("QMenu") != m_menuFont;
}

void StatusMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
    QMenu::initStyleOption(option, action);
    const auto* item = dynamic_cast<const MenuItemExtras*>(action);
    if (item && !item->subtitlePart().isEmpty())
        option->text = item->title() + StatusMenuStyle::titleSeparator + item->subtitlePart();
}

// Qt 6.8 takes the pointer to lie still until it has moved seven times or has come far from where
// Qt saw it last, and a click of one that lies still closes the menu and does nothing. Over a panel
// Qt has never seen it: a tap on a row, or a pointer that jumps there, would be lost.
void StatusMenu::noticePointer(const QMouseEvent& event) {
    constexpr int enoughMoves = 7;
    const int distance = (event.globalPosition().toPoint() - m_pointerWhenShown).manhattanLength();
    if (m_pointerCame || !rect().contains(event.position().toPoint()) ||
        distance <= QApplication::startDragDistance())
        return;
    m_pointerCame = true;
    QMouseEvent moved(QEvent::MouseMove, event.position(), event.globalPosition(), Qt::NoButton,
                      Qt::NoButton, Qt::NoModifier);
    for (int i = 0; i < enoughMoves; ++i)
        QMenu::mouseMoveEvent(&moved);
}

// The button may have gone down on the icon, and the menu opened under the pointer: only a press or
// a drag within the menu makes the release a choice.
void StatusMenu::mousePressEvent(QMouseEvent* event) {
    m_mouseDown = true;
    noticePointer(*event);
    QMenu::mousePressEvent(event);
}

void StatusMenu::mouseMoveEvent(QMouseEvent* event) {
    m_mouseDown = m_mouseDown || event->buttons() != Qt::NoButton;
    noticePointer(*event);
    QMenu::mouseMoveEvent(event);
}

void StatusMenu::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (std::exchange(m_mouseDown, false) && rect().contains(position) &&
        performIfParentItem(actionAt(position)))
        return;
    QMenu::mouseReleaseEvent(event);
}

void StatusMenu::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // A submenu that the pointer opened takes the keys though nothing in it is chosen yet.
        QAction* chosen = activeAction();
        if (!chosen && m_parent)
            chosen = m_parent->activeAction();
        if (performIfParentItem(chosen))
            return;
    }
    QMenu::keyPressEvent(event);
}

bool StatusMenu::performIfParentItem(QAction* action) {
    const auto* item = dynamic_cast<const MenuItemExtras*>(action);
    if (!item || !item->menu() || !item->hasCommand())
        return false;
    StatusMenu* top = this;
    while (top->m_parent)
        top = top->m_parent;
    top->close(); // and its submenus
    action->trigger();
    return true;
}

void StatusMenu::showEvent(QShowEvent* event) {
    m_pointerWhenShown = QCursor::pos();
    m_pointerCame = false;
    if (!m_parent)
        m_tracking = std::make_unique<EventTracking>(m_runLoop);
    QMenu::showEvent(event);
}

void StatusMenu::hideEvent(QHideEvent* event) {
    m_mouseDown = false;
    QMenu::hideEvent(event);
    m_tracking.reset();
}

} // namespace dorvane

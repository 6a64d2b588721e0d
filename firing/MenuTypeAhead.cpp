// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/MenuTypeAhead.h"

#include <QKeyEvent>

namespace dorvane {

namespace {

constexpr quint64 pause = 1000;

bool isTyped(const QKeyEvent& key) {
    return !key.text().isEmpty() && key.text().at(0).isPrint() &&
           (key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
}

} // namespace

MenuTypeAhead::MenuTypeAhead(QMenu& menu) : QObject(&menu), m_menu(menu) {
    menu.installEventFilter(this);
}

bool MenuTypeAhead::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.timestamp() - m_lastKey > pause)
        m_typed.clear();
    const bool choosesWithSpace = m_typed.isEmpty() && key.key() == Qt::Key_Space;
    if (!isTyped(key) || choosesWithSpace)
        return false;
    m_lastKey = key.timestamp();
    m_typed += key.text();
    for (QAction* const item : m_menu.actions()) {
        const QString name = item->data().toString();
        if (item->isVisible() && name.startsWith(m_typed, Qt::CaseInsensitive)) {
            m_menu.setActiveAction(item);
            break;
        }
    }
    return true;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/PullDownPopUp.h"

#include "sounds/MenuText.h"

#include <QMenu>
#include <QPointer>

#include <utility>

namespace dorvane {

PullDownPopUp::PullDownPopUp(QWidget* parent) : QComboBox(parent), m_menu(new QMenu(this)) {
    m_menu->addAction(QString());
    addItem(QString());
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
}

void PullDownPopUp::setFace(const QString& text, bool isMissing) {
    m_menu->actions().constFirst()->setText(menuText(text));
    setItemText(0, text);
    setPalette(QPalette());
    if (!isMissing)
        return;
    QPalette greyed;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        greyed.setColor(group, QPalette::ButtonText,
                        palette().color(QPalette::Disabled, QPalette::ButtonText));
    setPalette(greyed);
}

void PullDownPopUp::setFill(std::function<void(std::function<void()>)> fill) {
    m_fill = std::move(fill);
}

void PullDownPopUp::showPopup() {
    Q_EMIT menuWillOpen();
    if (!m_fill)
        return openMenu();
    if (std::exchange(m_isFilling, true))
        return;
    m_fill([self = QPointer(this)] {
        if (self && std::exchange(self->m_isFilling, false) && self->isVisible() &&
            self->isEnabled())
            self->openMenu();
    });
}

void PullDownPopUp::openMenu() {
    m_menu->actions().constFirst()->setVisible(false);
    m_menu->setMinimumWidth(width());
    m_menu->popup(mapToGlobal(rect().bottomLeft()));
}

} // namespace dorvane

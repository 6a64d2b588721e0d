// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalTimeWindow.h"

#include "editor/DialogButtons.h"
#include "ui_GraphicalTimeWindow.h"

namespace dorvane {

GraphicalTimeWindow::GraphicalTimeWindow(QWidget* parent)
    : QDialog(parent), m_controls(std::make_unique<Ui::GraphicalTimeWindow>()) {
    m_controls->setupUi(this);
    QPushButton* set = addAcceptAndCancel(*m_controls->buttonBox, QStringLiteral("&Set Time"));
    connect(m_controls->graphicalTimePicker, &GraphicalClock::changed, set,
            [this, set] { set->setEnabled(m_controls->graphicalTimePicker->isReadable()); });
}

GraphicalTimeWindow::~GraphicalTimeWindow() = default;

void GraphicalTimeWindow::run(QTime time) {
    m_controls->graphicalTimePicker->setTime(time);
    Q_EMIT m_controls->graphicalTimePicker->changed();
    m_controls->graphicalTimePicker->setFocus();
    open();
}

QTime GraphicalTimeWindow::time() const {
    return m_controls->graphicalTimePicker->time();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalTimeWindow.h"

#include "editor/DialogButtons.h"
#include "ui_GraphicalTimeWindow.h"

namespace dorvane {

GraphicalTimeWindow::GraphicalTimeWindow(QWidget* parent)
    : QDialog(parent), m_controls(std::make_unique<Ui::GraphicalTimeWindow>()) {
    m_controls->setupUi(this);
    addAcceptAndCancel(*m_controls->buttonBox, QStringLiteral("&Set Time"));
}

GraphicalTimeWindow::~GraphicalTimeWindow() = default;

void GraphicalTimeWindow::run(QTime time) {
    m_controls->graphicalTimePicker->setTime(time);
    m_controls->graphicalTimePicker->setFocus();
    open();
}

QTime GraphicalTimeWindow::time() const {
    return m_controls->graphicalTimePicker->time();
}

} // namespace dorvane

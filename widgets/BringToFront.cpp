// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/BringToFront.h"

#include <QWidget>

namespace dorvane {

// A minimised window counts as visible: showing it changes nothing.
void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace dorvane

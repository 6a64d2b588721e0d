// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/FitToScreen.h"

#include "widgets/BringToFront.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace dorvane {

void fitToScreen(QWidget& window, QSize wanted) {
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    window.resize(wanted.boundedTo(window.screen()->availableSize() - QSize(title, 2 * title)));
}

void showFitted(QWidget& window) {
    if (!window.isVisible()) {
        window.ensurePolished();
        fitToScreen(window, window.sizeHint());
    }
    bringToFront(window);
}

} // namespace dorvane

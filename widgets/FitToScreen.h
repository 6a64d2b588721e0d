// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QWidget;

namespace dorvane {

// Makes a window as large as `wanted`, or as its screen leaves room beside the panels and the
// window's own frame, whose size is not known before it is shown. Main thread only.
void fitToScreen(QWidget& window, QSize wanted);

// Brings a window to the front; one that was not open is as large as what is in it, where that
// fits.
void showFitted(QWidget& window);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace dorvane {

// Has a window seen and hands it the keyboard, whether it was never shown, hidden, minimised or
// behind others. What the window manager keeps to itself stays with it. Main thread only.
void bringToFront(QWidget& window);

} // namespace dorvane

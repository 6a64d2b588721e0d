// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/StatusPlacement.h"

#include <QList>

namespace dorvane {

// The screens of the desktop as they are now, the primary one first. On X11 it asks the server,
// which answers within a millisecond. Needs the application object; main thread only.
[[nodiscard]] QList<ScreenArea> screenAreas();

} // namespace dorvane

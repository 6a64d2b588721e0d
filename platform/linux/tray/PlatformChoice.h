// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>

namespace dorvane {

// Before there is an application object: where the floating clock will have to do and the desktop
// would neither let it choose its place nor stay above other windows, has the program shown over
// X11, which lets it. That is GNOME on Wayland without an extension for icons. Waits for the bus
// there, and for at most a fifth of a second. Leaves alone what the user has set.
void choosePlatform(const QDBusConnection& sessionBus);

} // namespace dorvane

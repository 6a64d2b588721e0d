// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

// Before there is an application object: on Wayland no window chooses its place nor stays above
// others, so that the window of a ring opens anywhere and is gone with the next click. GNOME and
// Plasma bring an X server along, over which both are to be had: the program is shown there if that
// is possible. Leaves alone what the user has set.
void choosePlatform();

} // namespace dorvane

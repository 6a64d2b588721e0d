// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRect>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace dorvane {

struct XcbFree {
    void operator()(void* reply) const { std::free(reply); }
};

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

// The application's connection to the X server, null when it is not on X11. Needs the application
// object; main thread only.
[[nodiscard]] xcb_connection_t* xcbConnection();

// The window that owns a selection, 0 for none. Asks the server, which answers within a fraction of
// a millisecond.
[[nodiscard]] xcb_window_t xcbOwner(xcb_connection_t* connection, xcb_atom_t selection);

// Keeps a window that is shown already on every desktop.
void xcbKeepOnAllDesktops(xcb_connection_t* connection, xcb_window_t window);

// Where the panels are, in pixels of the desktop. Asks the server.
[[nodiscard]] QList<QRect> xcbDocks(xcb_connection_t* connection);

// Whether another window that fills the screen lies above this one and hides its middle. Asks the
// server.
[[nodiscard]] bool xcbIsBehindFullScreen(xcb_connection_t* connection, xcb_window_t window);

// The atom of this name, 0 when the server is gone. Asks the server.
[[nodiscard]] xcb_atom_t xcbAtom(xcb_connection_t* connection, std::string_view name);

} // namespace dorvane

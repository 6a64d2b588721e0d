// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/Xcb.h"

#include <QGuiApplication>

#include <array>
#include <bit>
#include <cstdint>

namespace dorvane {

xcb_connection_t* xcbConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t xcbAtom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t xcbOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

// As a request to the window manager: not all of them understand a window that says so by itself.
void xcbKeepOnAllDesktops(xcb_connection_t* connection, xcb_window_t window) {
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = xcbAtom(connection, "_NET_WM_DESKTOP");
    request.data.data32[0] = 0xFFFFFFFF; // all
    request.data.data32[1] = 1;          // an application asks
    xcb_send_event(connection, 0, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   std::bit_cast<std::array<char, sizeof request>>(request).data());
    xcb_flush(connection);
}

} // namespace dorvane

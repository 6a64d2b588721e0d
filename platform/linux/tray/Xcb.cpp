// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/Xcb.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace dorvane {

namespace {

constexpr std::uint32_t mostWindows = 1024;

xcb_window_t xcbRoot(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

// The 32-bit values of a property.
std::vector<std::uint32_t> values(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

struct Client {
    xcb_window_t window;
    std::vector<std::uint32_t> values; // of the property that was asked for
    QRect rect;                        // in pixels of the desktop
};

// The windows of one of the window manager's lists that are to be seen. All questions are asked
// before the first answer is waited for.
std::vector<Client> clients(xcb_connection_t* connection, std::string_view list,
                            std::string_view property) {
    const xcb_window_t root = xcbRoot(connection);
    const auto ask = [connection](xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
        return xcb_get_property(connection, 0, window, name, type, 0, mostWindows);
    };
    const xcb_atom_t name = xcbAtom(connection, property);
    struct Question {
        xcb_window_t window;
        xcb_get_property_cookie_t values;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t size;
        xcb_translate_coordinates_cookie_t place;
    };
    std::vector<Question> questions;
    for (const xcb_window_t window :
         values(connection, ask(root, xcbAtom(connection, list), XCB_ATOM_WINDOW)))
        questions.push_back({window, ask(window, name, XCB_ATOM_ATOM),
                             xcb_get_window_attributes(connection, window),
                             xcb_get_geometry(connection, window),
                             xcb_translate_coordinates(connection, window, root, 0, 0)});
    std::vector<Client> found;
    for (const Question& question : questions) {
        std::vector<std::uint32_t> told = values(connection, question.values);
        const XcbReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection, question.attributes, nullptr));
        const XcbReply<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(connection, question.size, nullptr));
        const XcbReply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(connection, question.place, nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && size && place)
            found.push_back({question.window,
                             std::move(told),
                             {place->dst_x, place->dst_y, size->width, size->height}});
    }
    return found;
}

} // namespace

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
    xcb_send_event(connection, 0, xcbRoot(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   std::bit_cast<std::array<char, sizeof request>>(request).data());
    xcb_flush(connection);
}

QList<QRect> xcbDocks(xcb_connection_t* connection) {
    const xcb_atom_t dock = xcbAtom(connection, "_NET_WM_WINDOW_TYPE_DOCK");
    QList<QRect> docks;
    for (const Client& client : clients(connection, "_NET_CLIENT_LIST", "_NET_WM_WINDOW_TYPE"))
        if (std::ranges::count(client.values, dock) > 0)
            docks << client.rect;
    return docks;
}

bool xcbIsBehindFullScreen(xcb_connection_t* connection, xcb_window_t window) {
    const xcb_atom_t fullScreen = xcbAtom(connection, "_NET_WM_STATE_FULLSCREEN");
    const std::vector<Client> upwards =
        clients(connection, "_NET_CLIENT_LIST_STACKING", "_NET_WM_STATE");
    const auto own = std::ranges::find(upwards, window, &Client::window);
    return own != upwards.end() && std::any_of(own + 1, upwards.end(), [&](const Client& other) {
               return std::ranges::count(other.values, fullScreen) > 0 &&
                      other.rect.contains(own->rect.center());
           });
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/XEmbedTrayWatcher.h"

#include "platform/linux/tray/Xcb.h"

#include <QCoreApplication>

namespace dorvane {

XEmbedTrayWatcher::XEmbedTrayWatcher(std::function<void()> changed)
    : m_changed(std::move(changed)), m_connection(xcbConnection()) {
    if (!m_connection)
        return;
    m_selection = xcbAtom(m_connection, "_NET_SYSTEM_TRAY_S0");
    m_manager = xcbAtom(m_connection, "MANAGER");
    QCoreApplication::instance()->installNativeEventFilter(this);
    look();
}

XEmbedTrayWatcher::~XEmbedTrayWatcher() {
    if (m_connection && QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool XEmbedTrayWatcher::nativeEventFilter(const QByteArray& /*eventType*/, void* message,
                                          qintptr* /*result*/) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    bool relevant = false;
    switch (event->response_type & 0x7f) { // without the mark of an event that was sent by a client
    case XCB_CLIENT_MESSAGE: { // a new owner tells so to all who listen to the root window, as Qt
                               // does
        const auto* told = static_cast<const xcb_client_message_event_t*>(message);
        relevant = told->type == m_manager && told->data.data32[1] == m_selection;
        break;
    }
    case XCB_DESTROY_NOTIFY:
        relevant = m_owner != 0 &&
                   static_cast<const xcb_destroy_notify_event_t*>(message)->window == m_owner;
        break;
    default:
        break;
    }
    if (relevant) {
        const bool before = present();
        look();
        if (before != present())
            m_changed();
    }
    return false;
}

void XEmbedTrayWatcher::look() {
    m_owner = xcbOwner(m_connection, m_selection);
    if (m_owner == 0)
        return;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // the same that Qt asks for there
    xcb_change_window_attributes(m_connection, m_owner, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
}

} // namespace dorvane

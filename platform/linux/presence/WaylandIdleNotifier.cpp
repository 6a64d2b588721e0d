// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/WaylandIdleNotifier.h"

#include "ext-idle-notify-v1-client.h" // after what it leans on

#include <QSocketNotifier>

#include <string_view>
#include <wayland-client.h>

namespace dorvane {

// The objects go with their display.
struct WaylandIdleNotifier::Connection {
    ~Connection() {
        if (registry)
            wl_registry_destroy(registry);
        if (display)
            wl_display_disconnect(display);
    }

    void found(std::uint32_t name, std::string_view interface) {
        if (!seat && interface == wl_seat_interface.name)
            seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        if (!notifier && interface == ext_idle_notifier_v1_interface.name)
            notifier = static_cast<ext_idle_notifier_v1*>(
                wl_registry_bind(registry, name, &ext_idle_notifier_v1_interface, 1));
        if (!seat || !notifier || notification)
            return;
        static constexpr ext_idle_notification_v1_listener listener{
            .idled = [](void* self,
                        ext_idle_notification_v1*) { static_cast<Connection*>(self)->tell(true); },
            .resumed =
                [](void* self, ext_idle_notification_v1*) {
                    static_cast<Connection*>(self)->tell(false);
                }};
        notification = ext_idle_notifier_v1_get_idle_notification(
            notifier, static_cast<std::uint32_t>(idleTime.count()), seat);
        ext_idle_notification_v1_add_listener(notification, &listener, this);
        tell(false);
    }

    wl_display* display = nullptr;
    wl_registry* registry = nullptr;
    wl_seat* seat = nullptr;
    ext_idle_notifier_v1* notifier = nullptr;
    ext_idle_notification_v1* notification = nullptr;
    std::function<void(bool isIdle)> tell;
};

WaylandIdleNotifier::WaylandIdleNotifier(RunLoop& runLoop) : m_runLoop(runLoop) {}

WaylandIdleNotifier::~WaylandIdleNotifier() = default;

void WaylandIdleNotifier::watch(Told told) {
    m_told = std::move(told);
    m_runLoop.defer(m_lifeline.guard([](WaylandIdleNotifier& self) { self.begin(); }));
}

void WaylandIdleNotifier::begin() {
    m_connection = std::make_unique<Connection>();
    m_connection->tell = [this](bool isIdle) {
        m_told(isIdle ? std::optional(m_runLoop.sinceBoot() - idleTime) : std::nullopt);
    };
    m_connection->display = wl_display_connect(nullptr);
    if (!m_connection->display)
        return;
    m_connection->registry = wl_display_get_registry(m_connection->display);
    static constexpr wl_registry_listener listener{
        .global = [](void* self, wl_registry*, std::uint32_t name, const char* interface,
                     std::uint32_t) { static_cast<Connection*>(self)->found(name, interface); },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(m_connection->registry, &listener, m_connection.get());
    m_notifier = std::make_unique<QSocketNotifier>(wl_display_get_fd(m_connection->display),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { read(); });
    wl_display_flush(m_connection->display);
}

// Only ever called when there is something to read, so it does not wait.
void WaylandIdleNotifier::read() {
    if (wl_display_dispatch(m_connection->display) >= 0) {
        wl_display_flush(m_connection->display);
        return;
    }
    m_notifier->setEnabled(false); // or it would tell of the closed connection for ever
    if (m_connection->notification)
        m_told(std::nullopt);
}

} // namespace dorvane

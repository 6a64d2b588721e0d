// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/PanelBus.h"

#include "platform/Log.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <systemd/sd-bus.h>
#include <utility>

namespace dorvane {

// Does not wait for what is still to be sent.
void PanelBus::Close::operator()(sd_bus* bus) const {
    sd_bus_close_unref(bus);
}

PanelBus::PanelBus(Callbacks callbacks) : m_callbacks(std::move(callbacks)) {
    sd_bus* bus = nullptr;
    if (const int result = sd_bus_open_user(&bus); result < 0)
        qCWarning(logPlatform, "no bus for the panel: %s", std::strerror(-result));
    m_bus.reset(bus);
    flush();
}

PanelBus::~PanelBus() = default;

void PanelBus::flush() {
    if (m_bus)
        watch();
}

// Time-outs need no timer: nothing here waits for an answer.
void PanelBus::watch() {
    const int descriptor = sd_bus_get_fd(m_bus.get());
    const int events = sd_bus_get_events(m_bus.get());
    if (descriptor < 0 || events < 0)
        return lose();
    if (!m_readable || m_readable->socket() != descriptor) {
        m_readable = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        m_writable = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
        for (const auto* notifier : {m_readable.get(), m_writable.get()})
            QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                             [this] { process(); });
    }
    m_writable->setEnabled((events & POLLOUT) != 0);
}

// One message in each turn of the loop, so that no flood of them keeps an alarm from ringing; what
// is left makes the socket readable still. Opening and closing take several steps.
void PanelBus::process() {
    int result = 0;
    do
        result = sd_bus_process(m_bus.get(), nullptr);
    while (result > 0 && sd_bus_is_ready(m_bus.get()) <= 0);
    if (result == -EBUSY) // an event loop inside a handler
        return;
    if (result < 0)
        return lose();
    if (!m_isReady && sd_bus_is_ready(m_bus.get()) > 0) {
        m_isReady = true;
        m_callbacks.ready();
    }
    watch();
}

// The notifiers stay, because one of them may be the caller; and a handler may have lost it
// already.
void PanelBus::lose() {
    if (!m_bus)
        return;
    for (QSocketNotifier* notifier : {m_readable.get(), m_writable.get()})
        if (notifier)
            notifier->setEnabled(false);
    m_bus.reset();
    m_callbacks.lost();
}

} // namespace dorvane

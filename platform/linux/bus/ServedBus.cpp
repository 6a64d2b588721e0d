// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/bus/ServedBus.h"

#include "platform/Log.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <systemd/sd-bus.h>
#include <utility>

namespace dorvane {

namespace {

// Null with the reason told.
sd_bus* openBus(const QString& address) {
    sd_bus* bus = nullptr;
    int result = 0;
    if (address.isEmpty()) {
        result = sd_bus_open_user(&bus);
    } else if (result = sd_bus_new(&bus); result >= 0) {
        sd_bus_set_bus_client(bus, 1);
        result = sd_bus_set_address(bus, address.toUtf8().constData());
        if (result >= 0)
            result = sd_bus_start(bus);
    }
    if (result >= 0)
        return bus;
    qCInfo(logPlatform, "no session bus: %s", std::strerror(-result));
    return sd_bus_unref(bus);
}

} // namespace

// Does not wait for what is still to be sent.
void ServedBus::Close::operator()(sd_bus* bus) const {
    sd_bus_close_unref(bus);
}

ServedBus::ServedBus(Callbacks callbacks, const QString& address)
    : m_address(address), m_callbacks(std::move(callbacks)), m_bus(openBus(address)) {}

ServedBus::~ServedBus() = default;

void ServedBus::addObject(const char* path, const char* interface, const sd_bus_vtable* table,
                          void* data) {
    m_objects.push_back({path, interface, table, data});
    put(m_objects.back());
}

void ServedBus::put(const Object& object) const {
    if (m_bus)
        sd_bus_add_object_vtable(m_bus.get(), nullptr, object.path, object.interface, object.table,
                                 object.data);
}

// The socket may have the number of the one before.
bool ServedBus::connectAgain() {
    m_readable.reset();
    m_writable.reset();
    m_isReady = false;
    m_bus.reset(openBus(m_address));
    for (const Object& object : m_objects)
        put(object);
    flush();
    return m_bus != nullptr;
}

void ServedBus::flush() {
    if (m_bus)
        watch();
}

// Time-outs need no timer: an answer that never comes is given up with a later message. But
// messages that came while somebody waited for one count as a time-out that is over.
void ServedBus::watch() {
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
    const bool isToBeSent = (events & POLLOUT) != 0;
    m_writable->setEnabled(isToBeSent);
    m_readable->setEnabled(!isToBeSent || !m_isReady);
    std::uint64_t timeout = 0;
    if (!isToBeSent && sd_bus_get_timeout(m_bus.get(), &timeout) > 0 && timeout == 0)
        QMetaObject::invokeMethod(
            m_readable.get(), [this] { process(); }, Qt::QueuedConnection);
}

// One message in each turn of the loop, so that no flood of them keeps an alarm from ringing; what
// is left makes the socket readable still. Opening and closing take several steps.
void ServedBus::process() {
    if (!m_bus)
        return;
    int result = 0;
    do
        result = sd_bus_process(m_bus.get(), nullptr);
    while (result > 0 && sd_bus_is_ready(m_bus.get()) <= 0);
    if (result == -EBUSY) // an event loop inside a handler
        return;
    if (result < 0)
        return lose();
    m_behind = hasMore() ? std::min(m_behind, mostBehind) + 1 : 0;
    if (!m_isReady && sd_bus_is_ready(m_bus.get()) > 0) {
        m_isReady = true;
        if (m_callbacks.ready)
            m_callbacks.ready();
    }
    watch();
}

bool ServedBus::hasMore() const {
    std::uint64_t queued = 0;
    pollfd socket{sd_bus_get_fd(m_bus.get()), POLLIN, 0};
    return (sd_bus_get_n_queued_read(m_bus.get(), &queued) >= 0 && queued > 0) ||
           ::poll(&socket, 1, 0) > 0;
}

// The notifiers stay, because one of them may be the caller; and a handler may have lost it
// already.
void ServedBus::lose() {
    if (!m_bus)
        return;
    for (QSocketNotifier* notifier : {m_readable.get(), m_writable.get()})
        if (notifier)
            notifier->setEnabled(false);
    m_bus.reset();
    if (m_callbacks.lost)
        m_callbacks.lost();
}

} // namespace dorvane

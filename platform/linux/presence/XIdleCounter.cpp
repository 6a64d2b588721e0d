// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/XIdleCounter.h"

#include "platform/linux/tray/Xcb.h"

#include <QSocketNotifier>

#include <string_view>
#include <xcb/sync.h>

namespace dorvane {

void XIdleCounter::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

XIdleCounter::XIdleCounter(RunLoop& runLoop, RunLoop::Milliseconds idle)
    : m_runLoop(runLoop), m_idle(idle) {}

XIdleCounter::~XIdleCounter() = default;

void XIdleCounter::watch(Told told) {
    m_told = std::move(told);
    m_runLoop.defer(m_lifeline.guard([](XIdleCounter& self) { self.begin(); }));
}

void XIdleCounter::begin() {
    if (!open())
        return;
    m_told(std::nullopt);
    setAlarm(true);
    readEvents();
}

bool XIdleCounter::open() {
    m_connection.reset(xcb_connect(nullptr, nullptr)); // never null
    xcb_connection_t* const server = m_connection.get();
    if (xcb_connection_has_error(server) != 0)
        return false;
    const xcb_query_extension_reply_t* const sync = xcb_get_extension_data(server, &xcb_sync_id);
    if (!sync || sync->present == 0)
        return false;
    m_alarmEvent = static_cast<std::uint8_t>(sync->first_event + XCB_SYNC_ALARM_NOTIFY);
    const XcbReply<xcb_sync_initialize_reply_t> version(
        xcb_sync_initialize_reply(server, xcb_sync_initialize(server, 3, 1), nullptr));
    m_counter = version ? idleCounter() : 0;
    if (m_counter == 0)
        return false;
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(server), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { readEvents(); });
    return true;
}

std::uint32_t XIdleCounter::idleCounter() const {
    xcb_connection_t* const server = m_connection.get();
    const XcbReply<xcb_sync_list_system_counters_reply_t> counters(
        xcb_sync_list_system_counters_reply(server, xcb_sync_list_system_counters(server),
                                            nullptr));
    if (!counters)
        return 0;
    for (auto each = xcb_sync_list_system_counters_counters_iterator(counters.get()); each.rem > 0;
         xcb_sync_systemcounter_next(&each)) {
        // The library's own accessor counts the padding of the struct, which is not on the wire.
        const std::string_view name(reinterpret_cast<const char*>(&each.data->name_len + 1),
                                    each.data->name_len);
        if (name == "IDLETIME")
            return each.data->counter;
    }
    return 0;
}

// One alarm at a time: when the counter reaches the time, and then when it falls below it.
void XIdleCounter::setAlarm(bool forIdleness) {
    xcb_connection_t* const server = m_connection.get();
    if (m_alarm != 0)
        xcb_sync_destroy_alarm(server, m_alarm);
    m_alarm = xcb_generate_id(server);
    xcb_sync_create_alarm_value_list_t values{};
    values.counter = m_counter;
    values.valueType = XCB_SYNC_VALUETYPE_ABSOLUTE;
    values.value.lo = static_cast<std::uint32_t>(m_idle.count());
    values.testType =
        forIdleness ? XCB_SYNC_TESTTYPE_POSITIVE_COMPARISON : XCB_SYNC_TESTTYPE_NEGATIVE_TRANSITION;
    values.events = 1;
    constexpr std::uint32_t given = XCB_SYNC_CA_COUNTER | XCB_SYNC_CA_VALUE_TYPE |
                                    XCB_SYNC_CA_VALUE | XCB_SYNC_CA_TEST_TYPE | XCB_SYNC_CA_DELTA |
                                    XCB_SYNC_CA_EVENTS;
    xcb_sync_create_alarm_aux(server, m_alarm, given, &values);
    xcb_flush(server);
}

void XIdleCounter::readEvents() {
    xcb_connection_t* const server = m_connection.get();
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(server)}) {
        const auto* const told =
            reinterpret_cast<const xcb_sync_alarm_notify_event_t*>(event.get());
        if ((event->response_type & 0x7f) != m_alarmEvent || told->alarm != m_alarm ||
            told->state == XCB_SYNC_ALARMSTATE_DESTROYED)
            continue;
        m_isIdle = !m_isIdle;
        m_told(m_isIdle ? std::optional(m_runLoop.sinceBoot() - m_idle) : std::nullopt);
        setAlarm(!m_isIdle);
    }
    if (xcb_connection_has_error(server) == 0)
        return;
    m_notifier->setEnabled(false); // or it would tell of the closed connection for ever
    m_told(std::nullopt);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/ListAnswers.h"

#include "platform/linux/control/AlarmMessage.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr std::size_t mostWaiting = 64;
constexpr auto mostOfOneCaller = 4;
constexpr auto share = 4ms; // of a turn of the loop

} // namespace

bool ListAnswers::add(sd_bus_message* call, Ask ask) {
    const char* const caller = sd_bus_message_get_sender(call);
    const auto ofCaller =
        std::count_if(m_waiting.begin(), m_waiting.end(), [caller](const Waiting& waiting) {
            return std::strcmp(sd_bus_message_get_sender(waiting.call.get()), caller) == 0;
        });
    if (m_waiting.size() == mostWaiting || ofCaller == mostOfOneCaller)
        return false;
    m_waiting.push_back({BusMessagePtr(sd_bus_message_ref(call)), std::move(ask)});
    if (m_waiting.size() == 1)
        goOn();
    return true;
}

void ListAnswers::goOn() {
    m_turn = m_runLoop.scheduleOnce(
        0ms,
        [this] {
            if (writeSome()) {
                m_reply.reset();
                m_listing = {};
                m_waiting.pop_front();
                m_bus.flush();
            }
            if (!m_waiting.empty())
                goOn();
        },
        RunLoopMode::Common);
}

// Whether that was the end of the answer. A caller that has gone meanwhile is answered all the
// same: the bus drops that.
bool ListAnswers::writeSome() {
    const auto end = m_runLoop.uptime() + share;
    if (!m_reply) {
        m_reply = replyTo(m_waiting.front().call.get());
        if (!m_reply || sd_bus_message_open_container(m_reply.get(), 'a', "a{sv}") < 0)
            return true;
        m_listing = m_waiting.front().ask();
        m_written = 0;
    }
    BusWriter writer(m_reply);
    for (; m_written < m_listing.count; ++m_written) {
        if (m_runLoop.uptime() >= end)
            return false;
        writeReport(writer, m_listing.report(m_written));
        if (writer.result() < 0)
            return true;
    }
    if (sd_bus_message_close_container(m_reply.get()) >= 0)
        (void)writer.send();
    return true;
}

} // namespace dorvane

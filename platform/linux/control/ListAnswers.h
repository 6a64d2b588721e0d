// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/RemoteControl.h"
#include "platform/RunLoop.h"

#include <deque>
#include <functional>

namespace dorvane {

// Answers calls with lists of alarms, which may be thousands: in their order, a few milliseconds of
// each turn of the loop. Main thread only.
class ListAnswers {
public:
    using Ask = std::function<AlarmListing()>;

    // Bus and loop must outlive it.
    ListAnswers(ServedBus& bus, RunLoop& runLoop) : m_bus(bus), m_runLoop(runLoop) {}

    // Takes the list when its turn comes. False, and nothing happens, when too many wait already,
    // or too many of this caller.
    [[nodiscard]] bool add(sd_bus_message* call, Ask ask);

private:
    struct Waiting {
        BusMessagePtr call;
        Ask ask;
    };

    void goOn();
    [[nodiscard]] bool writeSome();

    ServedBus& m_bus;
    RunLoop& m_runLoop;
    std::deque<Waiting> m_waiting;
    BusMessagePtr m_reply; // to the first that waits, once it is begun
    AlarmListing m_listing;
    std::size_t m_written = 0;
    RunLoopTimer m_turn;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/presence/AwaySource.h"

#include <QObject>

#include <cstdint>
#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace dorvane {

// The counter IDLETIME of an X server, by alarms of the server's own: nobody asks for it again and
// again. Has a connection of its own. Not for an X server inside a Wayland session.
class XIdleCounter final : public QObject, public AwaySource {
public:
    // The run loop must outlive it.
    explicit XIdleCounter(RunLoop& runLoop, RunLoop::Milliseconds idle = idleTime);
    ~XIdleCounter() override;

    void watch(Told told) override;

private:
    void begin();
    [[nodiscard]] bool open();
    [[nodiscard]] std::uint32_t idleCounter() const;
    void setAlarm(bool forIdleness);
    void readEvents();

    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };

    RunLoop& m_runLoop;
    const RunLoop::Milliseconds m_idle;
    Told m_told;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::uint32_t m_counter = 0;
    std::uint32_t m_alarm = 0;
    std::uint8_t m_alarmEvent = 0;
    bool m_isIdle = false;
    Lifeline<XIdleCounter> m_lifeline{*this};
};

} // namespace dorvane

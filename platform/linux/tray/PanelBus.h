// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

struct sd_bus;

namespace dorvane {

// A connection to the session bus for what a panel asks again and again while the program rests.
// The main thread alone serves it: Qt's own connection takes a second thread, which would wake for
// every message that goes in or out. Never waits for the bus; main thread only.
class PanelBus {
public:
    struct Callbacks {
        std::function<void()> ready; // the connection has its name
        std::function<void()> lost;  // it is gone, and will not come back; called once
    };

    // Connects to the bus that the environment names; get() is null when there is none. The
    // callbacks come from the event loop or from flush(), and must not destroy the connection.
    explicit PanelBus(Callbacks callbacks);
    ~PanelBus();
    PanelBus(const PanelBus&) = delete;
    PanelBus& operator=(const PanelBus&) = delete;

    // For sd-bus's own functions, which refuse null with an error; null when the bus is gone.
    [[nodiscard]] sd_bus* get() const { return m_bus.get(); }

    // To be called after messages that were not sent from within a handler.
    void flush();

private:
    struct Close {
        void operator()(sd_bus* bus) const;
    };

    void process();
    void watch();
    void lose();

    Callbacks m_callbacks;
    bool m_isReady = false;
    std::unique_ptr<sd_bus, Close> m_bus;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
};

} // namespace dorvane

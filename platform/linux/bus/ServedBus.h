// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

struct sd_bus;
struct sd_bus_vtable;

namespace dorvane {

// A connection to the session bus for what others ask of us. The main thread alone serves it, one
// message in each turn of its loop, and takes none while what it has said already still waits to be
// sent: however many ask however fast, alarms ring in between, and nothing piles up here. Qt's own
// connection takes in all that comes, on a second thread that would wake for every message. Main
// thread only.
class ServedBus {
public:
    struct Callbacks {
        std::function<void()> ready; // the connection has its name
        std::function<void()> lost;  // it is gone until connectAgain()
    };

    // Connects to the bus of this address, or else to the one that the environment names; get() is
    // null when there is none. Works before there is an application object; nothing is served until
    // flush() is called. The callbacks come from the event loop or from flush(), and must not
    // destroy the connection.
    explicit ServedBus(Callbacks callbacks = {}, const QString& address = {});
    ~ServedBus();
    ServedBus(const ServedBus&) = delete;
    ServedBus& operator=(const ServedBus&) = delete;

    // For sd-bus's own functions, which refuse null with an error; null when the bus is gone.
    [[nodiscard]] sd_bus* get() const { return m_bus.get(); }

    // `data` is what the table's functions are called with.
    void addObject(const char* path, const char* interface, const sd_bus_vtable* table, void* data);

    // Once the connection is lost: makes another one to the same bus, with the objects that were
    // added to the first. False while that cannot be had. Not from within a callback.
    [[nodiscard]] bool connectAgain();
    void setLost(std::function<void()> lost) { m_callbacks.lost = std::move(lost); }

    // To be called after messages that were not sent from within a handler.
    void flush();

    // Whether messages are taken about as fast as they come. Else the one that is being handled may
    // have waited for longer than whoever sent it.
    [[nodiscard]] bool isUpToDate() const { return m_behind <= mostBehind; }

private:
    struct Close {
        void operator()(sd_bus* bus) const;
    };

    struct Object {
        const char* path;
        const char* interface;
        const sd_bus_vtable* table;
        void* data;
    };

    void process();
    void watch();
    void lose();
    [[nodiscard]] bool hasMore() const;
    void put(const Object& object) const;

    static constexpr int mostBehind = 500; // messages, which take a fraction of a second
    int m_behind = 0;                      // since none waited
    const QString m_address;
    Callbacks m_callbacks;
    std::vector<Object> m_objects;
    bool m_isReady = false;
    std::unique_ptr<sd_bus, Close> m_bus;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
};

} // namespace dorvane

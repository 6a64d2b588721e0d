// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/checks/CheckRow.h"

#include <QDBusConnection>

#include <functional>
#include <systemd/sd-bus.h>

namespace dorvane {

// The checks of the running instance on the session bus: the object /com/brackenfold/Dorvane/Checks
// with the interface com.brackenfold.Dorvane1.Checks. Main thread only.
class CheckObject final {
public:
    // `run` answers once, later; who asks again meanwhile is its to join.
    using Runner = std::function<void(bool playTestSound, std::function<void(CheckRows)> done)>;

    // The bus must outlive it.
    CheckObject(ServedBus& bus, Runner run);
    CheckObject(const CheckObject&) = delete;
    CheckObject& operator=(const CheckObject&) = delete;

private:
    static const sd_bus_vtable interface[];

    // Called by sd-bus; `data` is the object.
    static int run(sd_bus_message* call, void* data, sd_bus_error* error);

    ServedBus& m_bus;
    const Runner m_run;
    int m_unanswered = 0; // calls
    Lifeline<CheckObject> m_lifeline{*this};
};

// What somebody who asks gets.
struct CheckAnswer {
    enum class From { Instance, Nobody, Silence };
    From from = From::Nobody; // nobody runs, or somebody who does not answer
    CheckRows rows;
    QString error; // of silence
};

// Waits for the answer of the running instance, for half a minute at most.
[[nodiscard]] CheckAnswer askInstance(const QDBusConnection& bus, bool playTestSound);

} // namespace dorvane

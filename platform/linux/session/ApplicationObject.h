// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/ServedBus.h"

#include <functional>
#include <systemd/sd-bus.h>

namespace dorvane {

struct LaunchRequest;

// What other programs call on the session bus: the interface that desktop files with
// DBusActivatable=true promise, by the names of its definition. Main thread only.
class ApplicationObject final {
public:
    // The bus must outlive it.
    explicit ApplicationObject(ServedBus& bus);
    ApplicationObject(const ApplicationObject&) = delete;
    ApplicationObject& operator=(const ApplicationObject&) = delete;

    void setRequested(std::function<void(const LaunchRequest&)> requested);

private:
    static const sd_bus_vtable interface[];

    // Called by sd-bus; `data` is the object.
    static int activate(sd_bus_message* call, void* data, sd_bus_error* error);
    static int open(sd_bus_message* call, void* data, sd_bus_error* error);
    static int activateAction(sd_bus_message* call, void* data, sd_bus_error* error);

    [[nodiscard]] int pass(sd_bus_message* call, const LaunchRequest& request);

    std::function<void(const LaunchRequest&)> m_requested;
};

} // namespace dorvane

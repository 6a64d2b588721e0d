// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ApplicationObject.h"

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/session/LaunchRequest.h"

#include <utility>

namespace dorvane {

namespace {

constexpr auto unprivileged = SD_BUS_VTABLE_UNPRIVILEGED; // whoever is on the bus may call

} // namespace

const sd_bus_vtable ApplicationObject::interface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Activate", SD_BUS_ARGS("a{sv}", platform_data), SD_BUS_NO_RESULT,
                            activate, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("Open", SD_BUS_ARGS("as", uris, "a{sv}", platform_data),
                            SD_BUS_NO_RESULT, open, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("ActivateAction",
                            SD_BUS_ARGS("s", action_name, "av", parameter, "a{sv}", platform_data),
                            SD_BUS_NO_RESULT, activateAction, unprivileged),
    SD_BUS_VTABLE_END,
};

ApplicationObject::ApplicationObject(ServedBus& bus) {
    bus.addObject("/com/brackenfold/Dorvane", "org.freedesktop.Application", interface, this);
}

void ApplicationObject::setRequested(std::function<void(const LaunchRequest&)> requested) {
    m_requested = std::move(requested);
}

int ApplicationObject::activate(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    return static_cast<ApplicationObject*>(data)->pass(call, {});
}

int ApplicationObject::open(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    return static_cast<ApplicationObject*>(data)->pass(call, {QString(), readStrings(call)});
}

int ApplicationObject::activateAction(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    const char* name = "";
    if (const int result = sd_bus_message_read_basic(call, 's', &name); result < 0)
        return result;
    return static_cast<ApplicationObject*>(data)->pass(call, {QString::fromUtf8(name), {}});
}

int ApplicationObject::pass(sd_bus_message* call, const LaunchRequest& request) {
    const int result = sd_bus_reply_method_return(call, "");
    if (m_requested)
        m_requested(request);
    return result;
}

} // namespace dorvane

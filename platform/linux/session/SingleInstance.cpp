// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/SingleInstance.h"

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/session/LaunchRequest.h"
#include "platform/Log.h"

#include <QDir>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::microseconds patience = 2s;
constexpr auto service = "com.brackenfold.Dorvane";
constexpr auto path = "/com/brackenfold/Dorvane";
constexpr auto applicationInterface = "org.freedesktop.Application";

void writePlatformData(BusWriter& call) {
    call.container('a', "{sv}", [] {});
}

BusMessagePtr callFor(sd_bus* bus, const LaunchRequest& request) {
    const auto made = [bus](const char* method) {
        sd_bus_message* call = nullptr;
        sd_bus_message_new_method_call(bus, &call, service, path, applicationInterface, method);
        sd_bus_message_set_auto_start(call, 0);
        return BusMessagePtr(call);
    };
    BusMessagePtr call;
    if (!request.action.isEmpty()) {
        call = made("ActivateAction");
        BusWriter(call).text(request.action).container('a', "v", [] {});
    } else if (!request.uris.isEmpty()) {
        call = made("Open");
        BusWriter writer(call);
        writer.container('a', "s", [&] {
            for (const QString& uri : request.uris)
                writer.text(uri);
        });
    } else {
        call = made("Activate");
    }
    BusWriter writer(call);
    writePlatformData(writer);
    return call;
}

} // namespace

SingleInstance::SingleInstance(ServedBus& sessionBus, QString lockFolder)
    : m_bus(sessionBus), m_lockFolder(std::move(lockFolder)), m_object(sessionBus) {}

QString SingleInstance::lockFolder(const QString& caches) {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::isAbsolutePath(runtime) ? runtime : caches;
}

SingleInstance::Standing SingleInstance::claim(const LaunchRequest& request) {
    if (m_bus.get())
        if (const auto standing = claimOnBus(request))
            return *standing;
    return claimLock(request);
}

void SingleInstance::setRequested(std::function<void(const LaunchRequest&)> requested) {
    if (m_lock)
        m_lock->listen(requested);
    m_object.setRequested(std::move(requested));
    m_bus.flush();
}

// Nothing when the bus does not give out names. The object stands before the name does, so that
// whoever sees the name can call it.
std::optional<SingleInstance::Standing> SingleInstance::claimOnBus(const LaunchRequest& request) {
    for (;;) {
        const int result = sd_bus_request_name(m_bus.get(), service, 0);
        if (result >= 0 || result == -EALREADY)
            return Standing::First;
        if (result != -EEXIST) {
            qCWarning(logPlatform, "The session bus gives out no name: %s", std::strerror(-result));
            return std::nullopt;
        }
        switch (askOnBus(request)) {
        case Reply::Taken:
            return Standing::Answered;
        case Reply::Silent:
            return Standing::Unanswered;
        case Reply::Gone: // it has just ended, and its name is free
            break;
        }
    }
}

SingleInstance::Reply SingleInstance::askOnBus(const LaunchRequest& request) const {
    const BusMessagePtr call = callFor(m_bus.get(), request);
    if (!call)
        return Reply::Silent;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    const int result =
        sd_bus_call(m_bus.get(), call.get(), std::uint64_t(patience.count()), &error, nullptr);
    const bool isGone = sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
                        sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
    sd_bus_error_free(&error);
    if (result >= 0)
        return Reply::Taken;
    return isGone ? Reply::Gone : Reply::Silent;
}

SingleInstance::Standing SingleInstance::claimLock(const LaunchRequest& request) {
    m_lock.emplace(m_lockFolder);
    if (m_lock->acquire())
        return Standing::First;
    return m_lock->ask(request, std::chrono::duration_cast<std::chrono::milliseconds>(patience))
               ? Standing::Answered
               : Standing::Unanswered;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/SingleInstance.h"

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/session/LaunchRequest.h"
#include "platform/Log.h"

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds patience = 2s;
constexpr std::chrono::milliseconds longestEnd = 20s; // of an instance that waits for the disk
constexpr RunLoop::Milliseconds shortestPause = 1s;   // between looks for a bus that is gone
constexpr RunLoop::Milliseconds longestPause = 1min;
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

bool hasOwner(sd_bus* bus) {
    sd_bus_creds* owner = nullptr;
    const int result = sd_bus_get_name_creds(bus, service, 0, &owner);
    sd_bus_creds_unref(owner);
    return result >= 0;
}

} // namespace

SingleInstance::SingleInstance(ServedBus& sessionBus, const QString& lockFolder)
    : m_bus(sessionBus), m_object(sessionBus), m_lock(lockFolder) {}

QString SingleInstance::lockFolder(const QString& caches) {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::isAbsolutePath(runtime) ? runtime : caches;
}

SingleInstance::Standing SingleInstance::claim(const LaunchRequest& request) {
    while (!m_lock.acquire()) {
        switch (m_lock.ask(request, {.answer = patience, .end = longestEnd})) {
        case InstanceLock::Answer::Taken:
            return Standing::Answered;
        case InstanceLock::Answer::Silent:
            return Standing::Unanswered;
        case InstanceLock::Answer::Gone:
            break;
        }
    }
    return m_bus.get() ? claimOnBus(request) : Standing::First;
}

void SingleInstance::setRequested(std::function<void(const LaunchRequest&)> requested) {
    m_lock.listen(requested);
    m_object.setRequested(std::move(requested));
    m_bus.flush();
}

void SingleInstance::stayOnBus(RunLoop& runLoop, std::function<void()> joined) {
    m_joined = std::move(joined);
    m_pause = shortestPause;
    const auto look = [this, &runLoop](const auto& again) -> void {
        m_look = runLoop.scheduleOnce(
            m_pause,
            [this, again] {
                m_pause = std::min(2 * m_pause, longestPause);
                if (!m_bus.connectAgain())
                    return again(again);
                sd_bus_request_name_async(m_bus.get(), nullptr, service, 0, named, this);
                m_bus.flush();
            },
            RunLoopMode::Common);
    };
    m_bus.setLost([look] { look(look); });
    if (!m_bus.get())
        look(look);
}

// The lock is ours: no other instance has the name.
int SingleInstance::named(sd_bus_message* answer, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<SingleInstance*>(data);
    if (const int code = sd_bus_message_get_errno(answer); code != 0)
        qCWarning(logPlatform, "The session bus gives out no name: %s", std::strerror(code));
    self.m_pause = shortestPause;
    self.m_joined();
    return 0;
}

void SingleInstance::leave() {
    m_bus.setLost({});
    m_look.cancel();
    m_lock.stopListening();
    m_object.setRequested({});
    if (m_bus.get())
        sd_bus_release_name_async(m_bus.get(), nullptr, service, nullptr, nullptr);
}

// A bus that gives out no names costs only them. The object stands before the name does, so that
// whoever sees the name can call it.
SingleInstance::Standing SingleInstance::claimOnBus(const LaunchRequest& request) {
    for (;;) {
        const int result = sd_bus_request_name(m_bus.get(), service, 0);
        if (result >= 0 || result == -EALREADY)
            return Standing::First;
        if (result != -EEXIST) {
            qCWarning(logPlatform, "The session bus gives out no name: %s", std::strerror(-result));
            return Standing::First;
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
        sd_bus_call(m_bus.get(), call.get(),
                    std::uint64_t(std::chrono::microseconds(patience).count()), &error, nullptr);
    const bool isGone = sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
                        sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0 ||
                        !hasOwner(m_bus.get()); // who ends before it has answered has done nothing
    sd_bus_error_free(&error);
    if (result >= 0)
        return Reply::Taken;
    return isGone ? Reply::Gone : Reply::Silent;
}

} // namespace dorvane

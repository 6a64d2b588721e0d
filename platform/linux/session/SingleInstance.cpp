// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/SingleInstance.h"

#include "platform/linux/control/ControlNames.h"
#include "platform/linux/session/LaunchRequest.h"
#include "platform/Log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>

#include <chrono>
#include <utility>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds patience = 2s;
const auto applicationInterface = QStringLiteral("org.freedesktop.Application");

QDBusMessage callFor(const LaunchRequest& request) {
    const auto call = [](const QString& method) {
        return QDBusMessage::createMethodCall(bus::service, bus::path, applicationInterface,
                                              method);
    };
    if (!request.action.isEmpty())
        return call(QStringLiteral("ActivateAction"))
               << request.action << QVariantList() << QVariantMap();
    if (!request.uris.isEmpty())
        return call(QStringLiteral("Open")) << request.uris << QVariantMap();
    return call(QStringLiteral("Activate")) << QVariantMap();
}

} // namespace

SingleInstance::SingleInstance(QDBusConnection sessionBus, QString lockFolder)
    : m_bus(std::move(sessionBus)), m_lockFolder(std::move(lockFolder)) {}

QString SingleInstance::lockFolder(const QString& caches) {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::isAbsolutePath(runtime) ? runtime : caches;
}

SingleInstance::Standing SingleInstance::claim(const LaunchRequest& request) {
    if (m_bus.isConnected())
        if (const auto standing = claimOnBus(request))
            return *standing;
    return claimLock(request);
}

void SingleInstance::setRequested(std::function<void(const LaunchRequest&)> requested) {
    if (m_lock)
        m_lock->listen(requested);
    m_object.setRequested(std::move(requested));
}

// Nothing when the bus does not give out names. The object stands before the name does, so that
// whoever sees the name can call it.
std::optional<SingleInstance::Standing> SingleInstance::claimOnBus(const LaunchRequest& request) {
    m_bus.registerObject(bus::path, &m_object,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors);
    for (;;) {
        const auto reply = m_bus.interface()->registerService(
            bus::service, QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid()) {
            qCWarning(logPlatform, "The session bus gives out no name: %ls",
                      qUtf16Printable(reply.error().message()));
            return std::nullopt;
        }
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered)
            return Standing::First;
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
    QDBusMessage call = callFor(request);
    call.setAutoStartService(false);
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Reply::Taken;
    return QDBusError(reply).type() == QDBusError::ServiceUnknown ? Reply::Gone : Reply::Silent;
}

SingleInstance::Standing SingleInstance::claimLock(const LaunchRequest& request) {
    m_lock.emplace(m_lockFolder);
    if (m_lock->acquire())
        return Standing::First;
    return m_lock->ask(request, patience) ? Standing::Answered : Standing::Unanswered;
}

} // namespace dorvane

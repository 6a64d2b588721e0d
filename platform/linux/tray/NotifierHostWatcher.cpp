// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NotifierHostWatcher.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace dorvane {

namespace {

const auto watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

NotifierHostWatcher::NotifierHostWatcher(QDBusConnection bus, std::function<void()> changed)
    : m_bus(std::move(bus)), m_changed(std::move(changed)) {
    if (m_bus.isConnected())
        listen();
    else
        m_host = Host::Absent;
}

void NotifierHostWatcher::setBus(QDBusConnection bus) {
    m_bus = std::move(bus);
    listen();
}

void NotifierHostWatcher::listen() {
    m_bus.connect(QStringLiteral("org.freedesktop.DBus"), QString(),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                  {watcherService}, QString(), this, SLOT(ownerChanged(QString, QString, QString)));
    // Without the service's name: with it Qt asks the bus for the owner and waits for the answer.
    for (const QString& signal : {QStringLiteral("StatusNotifierHostRegistered"),
                                  QStringLiteral("StatusNotifierHostUnregistered")})
        m_bus.connect(QString(), watcherPath, watcherService, signal, this, SLOT(ask()));
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  this, SLOT(watcherGone()));
    ask();
}

NotifierHostWatcher::~NotifierHostWatcher() = default;

// Starts nothing.
void NotifierHostWatcher::ask() {
    QDBusMessage get = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    get << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    get.setAutoStartService(false);
    m_call = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(get));
    connect(m_call.get(), &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* call) { answered(*call); });
}

void NotifierHostWatcher::ownerChanged(const QString& /*name*/, const QString& /*oldOwner*/,
                                       const QString& newOwner) {
    if (!newOwner.isEmpty())
        ask();
    else
        watcherGone();
}

void NotifierHostWatcher::watcherGone() {
    m_call.reset();
    setHost(Host::Absent);
}

void NotifierHostWatcher::answered(const QDBusPendingCallWatcher& call) {
    const QDBusPendingReply<QDBusVariant> reply = call;
    const QDBusError::ErrorType error = reply.error().type();
    if (error == QDBusError::NoReply || error == QDBusError::TimedOut)
        return; // it hangs; its next signal or owner brings a new question
    const bool present = !reply.isError() && reply.value().variant().toBool();
    setHost(present ? Host::Present : Host::Absent);
}

void NotifierHostWatcher::setHost(Host host) {
    if (m_host == host)
        return;
    m_host = host;
    m_changed();
}

} // namespace dorvane

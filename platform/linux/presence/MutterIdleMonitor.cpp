// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/MutterIdleMonitor.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace dorvane {

namespace {

const auto name = QStringLiteral("org.gnome.Mutter.IdleMonitor");
const auto path = QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core");

} // namespace

MutterIdleMonitor::MutterIdleMonitor(RunLoop& runLoop, QDBusConnection bus)
    : m_runLoop(runLoop)
    , m_bus(std::move(bus))
    , m_service(name, m_bus,
                QDBusServiceWatcher::WatchForRegistration |
                    QDBusServiceWatcher::WatchForUnregistration) {
    connect(&m_service, &QDBusServiceWatcher::serviceRegistered, this, [this] { begin(); });
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        m_activeWatch = 0;
        if (std::exchange(m_idleWatch, 0) != 0)
            m_told(std::nullopt);
    });
}

void MutterIdleMonitor::watch(Told told) {
    m_told = std::move(told);
    // By no name: Qt would wait for the bus to tell whose it is. The number tells ours apart.
    m_bus.connect(QString(), path, name, QStringLiteral("WatchFired"), this,
                  SLOT(watchFired(uint)));
    begin();
}

void MutterIdleMonitor::begin() {
    if (!m_told)
        return;
    add(QStringLiteral("AddIdleWatch"), {quint64(idleTime.count())}, [this](uint id) {
        m_idleWatch = id;
        m_told(std::nullopt);
    });
}

void MutterIdleMonitor::add(const QString& method, const QVariantList& arguments,
                            const std::function<void(uint id)>& added) {
    QDBusMessage call = QDBusMessage::createMethodCall(name, path, name, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    const auto watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, added] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.type() == QDBusMessage::ReplyMessage)
            added(reply.arguments().value(0).toUInt());
    });
}

// The watch for idleness stays; that for the next key or movement is gone once it has told.
void MutterIdleMonitor::watchFired(uint id) {
    if (id == m_idleWatch && id != 0) {
        m_told(m_runLoop.sinceBoot() - idleTime);
        add(QStringLiteral("AddUserActiveWatch"), {},
            [this](uint added) { m_activeWatch = added; });
    } else if (id == m_activeWatch && id != 0) {
        m_activeWatch = 0;
        m_told(std::nullopt);
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/LogindSleepInhibitor.h"

#include "platform/Log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace dorvane {

void LogindSleepInhibitor::setHeld(bool isHeld) {
    m_isWanted = isHeld;
    if (!isHeld)
        m_held = {};
    else if (!m_held.isValid() && !m_isAsking)
        take();
}

void LogindSleepInhibitor::take() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    // Idle sleep alone, which can only be blocked; who closes the lid or says "sleep" is obeyed.
    call << QStringLiteral("idle") << QStringLiteral("Dorvane") << QStringLiteral("An alarm rings")
         << QStringLiteral("block");
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        complain(QStringLiteral("no system bus"));
        return;
    }
    m_isAsking = true;
    const auto answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        m_isAsking = false;
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
        if (!reply.isError() && m_isWanted)
            m_held = reply.value();
        if (reply.isError())
            complain(reply.error().message());
    });
}

void LogindSleepInhibitor::complain(const QString& reason) {
    if (!std::exchange(m_hasComplained, true))
        qCInfo(logPlatform).noquote()
            << "The machine may fall asleep while an alarm rings:" << reason;
}

} // namespace dorvane

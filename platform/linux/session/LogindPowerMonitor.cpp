// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/LogindPowerMonitor.h"

#include "platform/Log.h"

#include <QDBusConnection>

namespace dorvane {

LogindPowerMonitor::LogindPowerMonitor() {
    QMetaObject::invokeMethod(
        this, [this] { listen(); }, Qt::QueuedConnection);
}

void LogindPowerMonitor::setPoweredOn(std::function<void()> poweredOn) {
    m_poweredOn = std::move(poweredOn);
}

void LogindPowerMonitor::listen() {
    const bool listening = QDBusConnection::systemBus().connect(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
        SLOT(prepareForSleep(bool)));
    if (!listening)
        qCInfo(logPlatform, "No system bus; waking up goes unnoticed.");
}

void LogindPowerMonitor::prepareForSleep(bool goingToSleep) {
    if (!goingToSleep && m_poweredOn)
        m_poweredOn();
}

} // namespace dorvane

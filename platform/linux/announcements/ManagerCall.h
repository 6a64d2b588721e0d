// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusMessage>

namespace dorvane {

// A call of the user's service manager, which is never started for it.
[[nodiscard]] inline QDBusMessage managerCall(const QString& method,
                                              const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.systemd1.Manager"), method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    return call;
}

} // namespace dorvane

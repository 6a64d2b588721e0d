// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/LivingInstance.h"

#include "platform/linux/control/ControlNames.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <chrono>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds patience = 2s;

} // namespace

void askForLife(const QDBusConnection& session, QObject& context,
                std::function<void(bool isAlive)> answered) {
    if (!session.isConnected()) { // nobody would ever answer
        QMetaObject::invokeMethod(
            &context, [answered = std::move(answered)] { answered(false); }, Qt::QueuedConnection);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        bus::service, bus::path, QStringLiteral("org.freedesktop.DBus.Introspectable"),
        QStringLiteral("Introspect"));
    call.setAutoStartService(false);
    const auto watcher = new QDBusPendingCallWatcher(
        session.asyncCall(call, static_cast<int>(patience.count())), &context);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, &context,
        [watcher, answered = std::move(answered)] {
            watcher->deleteLater();
            // A refusal is an answer, too.
            const auto error = watcher->isError() ? watcher->error().type() : QDBusError::NoError;
            answered(error == QDBusError::NoError || error == QDBusError::UnknownMethod ||
                     error == QDBusError::UnknownInterface || error == QDBusError::UnknownObject ||
                     error == QDBusError::AccessDenied);
        });
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/LogindSession.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace dorvane {

namespace {

const auto service = QStringLiteral("org.freedesktop.login1");
const auto session = QStringLiteral("org.freedesktop.login1.Session");
const auto properties = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace

// The path that stands for the caller's own session sends no signals: the real one is asked for.
void LogindSession::watch(Told told) {
    m_told = std::move(told);
    ask(QDBusMessage::createMethodCall(service,
                                       QStringLiteral("/org/freedesktop/login1/session/auto"),
                                       properties, QStringLiteral("Get"))
            << session << QStringLiteral("Id"),
        [this](const QVariant& answer) {
            findSession(answer.value<QDBusVariant>().variant().toString());
        });
}

void LogindSession::ask(const QDBusMessage& call,
                        const std::function<void(const QVariant& answer)>& then) {
    const auto watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, then] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.type() == QDBusMessage::ReplyMessage)
            then(reply.arguments().value(0));
    });
}

void LogindSession::findSession(const QString& id) {
    ask(QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/login1"),
                                       QStringLiteral("org.freedesktop.login1.Manager"),
                                       QStringLiteral("GetSession"))
            << id,
        [this](const QVariant& answer) { listen(answer.value<QDBusObjectPath>().path()); });
}

void LogindSession::listen(const QString& path) {
    m_path = path;
    // By no name: Qt would wait for the bus to tell whose it is. So anybody can send this, and it
    // is logind itself that is asked what has changed.
    m_bus.connect(QString(), path, properties, QStringLiteral("PropertiesChanged"), this,
                  SLOT(look()));
    look();
}

void LogindSession::look() {
    ask(QDBusMessage::createMethodCall(service, m_path, properties, QStringLiteral("GetAll"))
            << session,
        [this](const QVariant& answer) {
            const auto all = qdbus_cast<QVariantMap>(answer);
            if (!all.contains(QStringLiteral("LockedHint")))
                return;
            if (!std::exchange(m_isKnown, true))
                m_told(std::nullopt);
            take(all);
        });
}

void LogindSession::take(const QVariantMap& properties) {
    m_isLocked = properties.value(QStringLiteral("LockedHint"), m_isLocked).toBool();
    m_isIdle = properties.value(QStringLiteral("IdleHint"), m_isIdle).toBool();
    const bool isAway = m_isLocked || m_isIdle;
    if (isAway == m_since.has_value())
        return;
    m_since = isAway ? std::optional(m_runLoop.sinceBoot()) : std::nullopt;
    m_told(m_since);
}

} // namespace dorvane

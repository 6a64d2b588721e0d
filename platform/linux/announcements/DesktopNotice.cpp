// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/DesktopNotice.h"

#include "platform/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>

#include <utility>

namespace dorvane {

namespace {

const auto service = QStringLiteral("org.freedesktop.Notifications");
const auto path = QStringLiteral("/org/freedesktop/Notifications");
constexpr uchar critical = 2; // it stays until somebody answers it, above full-screen windows, too

} // namespace

void DesktopNotice::show(const QString& title, const QString& text,
                         const std::vector<Action>& actions,
                         std::function<void(const QString& key)> chosen) {
    m_title = title;
    m_text = text;
    m_chosen = std::move(chosen);
    m_keys.clear();
    m_keysAndLabels.clear();
    for (const Action& action : actions) {
        m_keys << action.key;
        m_keysAndLabels << action.key << action.label;
    }
    listen();
    notify();
}

// By no names: Qt would wait for the bus to tell whose they are.
void DesktopNotice::listen() {
    if (std::exchange(m_isListening, true))
        return;
    m_bus.connect(QString(), path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString, QDBusMessage)));
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                  {service}, QString(), this, SLOT(ownerChanged(QString, QString, QString)));
}

void DesktopNotice::notify() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    call << QStringLiteral("Dorvane") << m_id << QStringLiteral("com.brackenfold.Dorvane")
         << m_title << m_text.toHtmlEscaped() << m_keysAndLabels
         << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(critical)},
                        {QStringLiteral("desktop-entry"),
                         QStringLiteral("com.brackenfold.Dorvane")}}
         << 0;
    const auto answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call));
    // It may be taken back, or this be gone, before the answer is there.
    connect(answer, &QDBusPendingCallWatcher::finished, answer,
            [answer, bus = m_bus, self = QPointer(this), show = ++m_shows] {
                answer->deleteLater();
                const QDBusPendingReply<uint> reply = *answer;
                if (reply.isError())
                    qCWarning(logPlatform).noquote()
                        << "no notification is shown:" << reply.error().message();
                else if (self && show == self->m_shows && self->m_chosen)
                    self->shown(reply.value(), reply.reply().service());
                else
                    close(bus, reply.reply().service(), reply.value());
            });
}

void DesktopNotice::shown(uint id, const QString& shower) {
    m_id = id;
    m_shower = shower;
}

void DesktopNotice::setBus(QDBusConnection bus) {
    m_bus = std::move(bus);
    m_isListening = false;
    m_id = 0;
    if (!m_chosen)
        return;
    listen();
    notify();
}

void DesktopNotice::withdraw() {
    m_chosen = {};
    if (const uint id = std::exchange(m_id, 0); id != 0)
        close(m_bus, m_shower, id);
}

void DesktopNotice::close(const QDBusConnection& bus, const QString& shower, uint id) {
    bus.send(
        QDBusMessage::createMethodCall(shower, path, service, QStringLiteral("CloseNotification"))
        << id);
}

// Who has only just been started for ours is about to show it.
void DesktopNotice::ownerChanged(const QString& name, const QString&, const QString& owner) {
    if (name != service || owner.isEmpty() || owner == m_shower || m_id == 0 || !m_chosen)
        return;
    m_id = 0;
    notify();
}

// Whoever shows notifications next counts them anew; and a click beside the buttons is no answer.
void DesktopNotice::actionInvoked(uint id, const QString& key, const QDBusMessage& signal) {
    if (id != m_id || id == 0 || signal.service() != m_shower || !m_keys.contains(key))
        return;
    m_id = 0; // it is gone with its answer
    if (const auto chosen = std::exchange(m_chosen, {}))
        chosen(key);
}

} // namespace dorvane

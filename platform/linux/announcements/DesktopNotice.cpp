// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/DesktopNotice.h"

#include "platform/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

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
    if (!std::exchange(m_isListening, true))
        m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                      SLOT(actionInvoked(uint, QString)));
    m_chosen = std::move(chosen);
    QStringList keysAndLabels;
    for (const Action& action : actions)
        keysAndLabels << action.key << action.label;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    call << QStringLiteral("Dorvane") << m_id << QStringLiteral("com.brackenfold.Dorvane") << title
         << text.toHtmlEscaped() << keysAndLabels
         << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(critical)},
                        {QStringLiteral("desktop-entry"),
                         QStringLiteral("com.brackenfold.Dorvane")}}
         << 0;
    const auto answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, show = ++m_shows] {
        answer->deleteLater();
        const QDBusPendingReply<uint> reply = *answer;
        if (reply.isError())
            qCWarning(logPlatform).noquote()
                << "no notification is shown:" << reply.error().message();
        else if (show == m_shows && m_chosen)
            m_id = reply.value();
        else
            close(reply.value()); // it was taken back meanwhile
    });
}

void DesktopNotice::withdraw() {
    m_chosen = {};
    if (const uint id = std::exchange(m_id, 0); id != 0)
        close(id);
}

void DesktopNotice::close(uint id) {
    m_bus.send(
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("CloseNotification"))
        << id);
}

void DesktopNotice::actionInvoked(uint id, const QString& key) {
    if (id != m_id || id == 0)
        return;
    m_id = 0; // it is gone with its answer
    if (const auto chosen = std::exchange(m_chosen, {}))
        chosen(key);
}

} // namespace dorvane

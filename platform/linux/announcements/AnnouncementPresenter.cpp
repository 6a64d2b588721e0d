// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/AnnouncementPresenter.h"

#include "platform/Log.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
constexpr uchar critical = 2; // it stays until somebody answers it

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                          service, method);
}

// Asking for the service starts it where it can be started. Early in a session that fails, or takes
// until the bus loses patience.
constexpr std::chrono::milliseconds patience = 20s;

bool isRefusal(const QDBusError& error) {
    return error.type() == QDBusError::UnknownMethod || error.type() == QDBusError::Failed ||
           error.type() == QDBusError::AccessDenied || error.type() == QDBusError::InvalidArgs ||
           error.type() == QDBusError::LimitsExceeded ||
           (error.type() == QDBusError::Other && !error.name().contains(u"Spawn"));
}

} // namespace

AnnouncementPresenter::AnnouncementPresenter(RunLoop& runLoop, UserNotification notification,
                                             QDBusConnection bus, std::function<void(Outcome)> done)
    : m_runLoop(runLoop)
    , m_notification(std::move(notification))
    , m_bus(std::move(bus))
    , m_service(service, m_bus, QDBusServiceWatcher::WatchForRegistration)
    , m_done(std::move(done)) {
    connect(&m_service, &QDBusServiceWatcher::serviceRegistered, this,
            &AnnouncementPresenter::show);
}

void AnnouncementPresenter::show() {
    if (m_isAsking)
        return;
    m_isAsking = true;
    auto* watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(call(QStringLiteral("GetCapabilities")),
                                                    static_cast<int>(patience.count())),
                                    this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QStringList> reply = *watcher;
        if (!reply.isError() || isRefusal(reply.error()))
            return notify(reply.isError() ? QStringList() : reply.value());
        m_isAsking = false;
        m_again = m_runLoop.scheduleOnce(
            patience, [this] { show(); }, RunLoopMode::Common);
    });
}

void AnnouncementPresenter::notify(const QStringList& capabilities) {
    QStringList lines{m_notification.subtitle, m_notification.informativeText};
    lines.removeAll(QString());
    QString body = lines.join(QLatin1Char('\n'));
    if (capabilities.contains(QStringLiteral("body-markup")))
        body = body.toHtmlEscaped();
    const QVariantMap hints{
        {QStringLiteral("urgency"), QVariant::fromValue(critical)},
        {QStringLiteral("category"), QStringLiteral("x-dorvane.alarm")},
        {QStringLiteral("desktop-entry"), QStringLiteral("com.brackenfold.Dorvane")},
        {QStringLiteral("sound-name"), QStringLiteral("alarm-clock-elapsed")}};
    QDBusMessage message = call(QStringLiteral("Notify"));
    message << QStringLiteral("Dorvane") << 0U << QStringLiteral("com.brackenfold.Dorvane")
            << m_notification.title << body << QStringList() << hints << 0;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    const bool makesSound = capabilities.contains(QStringLiteral("sound"));
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, makesSound] {
        watcher->deleteLater();
        answered(*watcher, makesSound);
    });
}

void AnnouncementPresenter::answered(const QDBusPendingCallWatcher& call, bool makesSound) {
    if (call.isError())
        qCWarning(logPlatform).noquote() << "the announcement of" << m_notification.subtitle
                                         << "was refused:" << call.error().message();
    m_done(call.isError() ? Outcome::Refused : makesSound ? Outcome::Shown : Outcome::ShownSilent);
}

} // namespace dorvane

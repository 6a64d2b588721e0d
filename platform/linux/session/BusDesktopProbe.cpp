// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/BusDesktopProbe.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <memory>
#include <sys/timex.h>

namespace dorvane {

namespace {

constexpr int patience = 3000; // milliseconds

// Answers, once all who were asked have.
struct Inquiry {
    explicit Inquiry(std::function<void(const DesktopAbilities&)> done_) : done(std::move(done_)) {}
    Inquiry(const Inquiry&) = delete;
    Inquiry& operator=(const Inquiry&) = delete;
    ~Inquiry() { done(abilities); }

    DesktopAbilities abilities;
    std::function<void(const DesktopAbilities&)> done;
};

// Whether the service is there, or would be started by a call; a property of it tells both.
void askFor(bool DesktopAbilities::*ability, const QDBusConnection& bus, const QDBusMessage& call,
            const std::shared_ptr<Inquiry>& inquiry, QObject& context) {
    if (!bus.isConnected()) // nobody would ever answer
        return;
    const auto answer = new QDBusPendingCallWatcher(bus.asyncCall(call, patience), &context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context,
                     [answer, inquiry, ability] {
                         answer->deleteLater();
                         inquiry->abilities.*ability = !answer->isError();
                     });
}

QDBusMessage peerCall(const char* service, const char* path, const char* interface,
                      const char* method) {
    return QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
                                          QLatin1String(interface), QLatin1String(method));
}

bool kernelClockIsSynchronised() {
    timex state{};
    return adjtimex(&state) != TIME_ERROR && (state.status & STA_UNSYNC) == 0;
}

} // namespace

void BusDesktopProbe::ask(std::function<void(const DesktopAbilities&)> done) {
    const auto inquiry = std::make_shared<Inquiry>(std::move(done));
    // Where there is no bus at all, not from inside this call.
    QMetaObject::invokeMethod(
        &m_context, [inquiry] {}, Qt::QueuedConnection);
    inquiry->abilities.clockIsSynchronised = kernelClockIsSynchronised();
    QDBusMessage manager = peerCall("org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                    "org.freedesktop.DBus.Properties", "Get");
    manager << QStringLiteral("org.freedesktop.systemd1.Manager") << QStringLiteral("Version");
    askFor(&DesktopAbilities::schedulesAnnouncements, m_session, manager, inquiry, m_context);
    askFor(&DesktopAbilities::showsAnnouncements, m_session,
           peerCall("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                    "org.freedesktop.Notifications", "GetServerInformation"),
           inquiry, m_context);
    QDBusMessage logind = peerCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                   "org.freedesktop.DBus.Properties", "Get");
    logind << QStringLiteral("org.freedesktop.login1.Manager")
           << QStringLiteral("PreparingForSleep");
    askFor(&DesktopAbilities::tellsOfWaking, QDBusConnection::systemBus(), logind, inquiry,
           m_context);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/SystemdNotificationCenter.h"

#include "platform/linux/announcements/AnnouncementUnits.h"
#include "platform/Log.h"

#include <QDBusMessage>
#include <QDir>
#include <QFile>

#include <chrono>
#include <cstdio>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// How long the end of a session may be held up.
constexpr std::chrono::milliseconds patience = 800ms;
constexpr std::chrono::milliseconds timeToStop = 2s;

QString unitFolder(const UserFolders& folders) {
    return folders.configuration + QStringLiteral("/systemd/user");
}

QString linkOf(const QString& units) {
    return units + QStringLiteral("/timers.target.wants/") + announcementTarget;
}

// Whole or not at all, but not waiting for the disk each time: a hundred of them are written while
// the session ends, and the manager reads them only when it is told to.
bool writeUnit(const QString& path, const QByteArray& text) {
    const QString unfinished = path + QStringLiteral(".new");
    QFile file(unfinished);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return false;
    file.close();
    return file.error() == QFileDevice::NoError &&
           std::rename(QFile::encodeName(unfinished).constData(),
                       QFile::encodeName(path).constData()) == 0;
}

QDBusMessage managerCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.systemd1.Manager"), method);
    call.setArguments(arguments);
    return call;
}

} // namespace

SystemdNotificationCenter::SystemdNotificationCenter(RunLoop& runLoop, const UserFolders& folders,
                                                     QString program, QDBusConnection bus)
    : m_runLoop(runLoop)
    , m_units(unitFolder(folders))
    , m_stamps(folders.data + QStringLiteral("/systemd/timers"))
    , m_program(std::move(program))
    , m_bus(std::move(bus)) {}

QString SystemdNotificationCenter::fileOf(const UserFolders& folders, const QString& id) {
    return unitFolder(folders) + QLatin1Char('/') + announcementTimer(id);
}

void SystemdNotificationCenter::replaceScheduledNotifications(
    const std::vector<UserNotification>& notifications) {
    const QString replace = QStringLiteral("replace");
    const QString reload = QStringLiteral("Reload");
    if (const QStringList withdrawn = withdraw(); !withdrawn.isEmpty()) {
        tell(QStringLiteral("StopUnit"), {announcementTarget, replace});
        // A timer that is still to be stopped when the manager finds its file gone would count as
        // failed, and be listed.
        m_forget = m_runLoop.scheduleOnce(
            timeToStop,
            [this, withdrawn, reload] {
                tell(reload, {});
                for (const QString& unit : withdrawn)
                    tell(QStringLiteral("ResetFailedUnit"), {unit});
            },
            RunLoopMode::Common);
    }
    if (notifications.empty())
        return;
    if (!write(notifications)) {
        qCWarning(logPlatform).noquote() << "cannot write announcements to" << m_units;
        return;
    }
    tell(reload, {});
    // The program ends after this: wait for the answer, so that nothing is left unsent.
    const QDBusMessage answer =
        m_bus.call(managerCall(QStringLiteral("StartUnit"), {announcementTarget, replace}),
                   QDBus::Block, static_cast<int>(patience.count()));
    if (answer.type() == QDBusMessage::ErrorMessage)
        qCWarning(logPlatform).noquote()
            << "no user manager takes announcements; alarms stay silent until the next start:"
            << answer.errorMessage();
}

void SystemdNotificationCenter::tell(const QString& method, const QVariantList& arguments) {
    m_bus.send(managerCall(method, arguments));
}

// What was withdrawn. Our files alone are looked at: at a start that finds none, nobody is asked
// anything.
QStringList SystemdNotificationCenter::withdraw() {
    QDir units(m_units);
    QStringList withdrawn = units.entryList({announcementTimer(QStringLiteral("*"))}, QDir::Files);
    for (const QString& timer : std::as_const(withdrawn)) {
        units.remove(timer);
        QFile::remove(m_stamps + QStringLiteral("/stamp-") + timer);
    }
    QFile::remove(linkOf(m_units));
    if (units.remove(announcementTarget))
        withdrawn << announcementTarget;
    units.remove(announcementService);
    return withdrawn;
}

bool SystemdNotificationCenter::write(const std::vector<UserNotification>& notifications) {
    const QString folder = m_units + QLatin1Char('/');
    if (!QDir().mkpath(folder + QStringLiteral("timers.target.wants")))
        return false;
    QStringList timers;
    for (const UserNotification& notification : notifications) {
        const QString id = QString::number(timers.size() + 1);
        timers << announcementTimer(id);
        if (!writeUnit(folder + timers.last(), timerUnit(id, notification)))
            return false;
    }
    return writeUnit(folder + announcementService, serviceUnit(m_program)) &&
           writeUnit(folder + announcementTarget, targetUnit(timers)) &&
           QFile::link(folder + announcementTarget, linkOf(m_units));
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/LoginUnit.h"

#include "platform/linux/announcements/ManagerCall.h"
#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace dorvane {

namespace {

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isLink(const QString& path) {
    return QFileInfo(path).isSymLink();
}

void install(const QString& units, const QByteArray& unit) {
    const QString path = units + QLatin1Char('/') + loginService;
    if (isLink(path) || contentsOf(path) == unit)
        return;
    const QString wanted = units + QStringLiteral("/default.target.wants");
    const QString link = wanted + QLatin1Char('/') + loginService;
    QDir().mkpath(wanted);
    // First, so that a unit without it is one that the user has disabled.
    if (!QFileInfo::exists(path) && !isLink(link) && !QFile::link(path, link))
        qCWarning(logPlatform).noquote() << "cannot make" << link;
    if (const auto error = writeFileAtomically(path, unit))
        qCWarning(logPlatform).noquote() << "cannot write" << path << *error;
}

QStringList removeEarlierVersions(const QString& units, const QString& stamps) {
    QStringList removed;
    const QDir folder(units);
    for (const QString& name : folder.entryList({QStringLiteral("dorvane-*")}, QDir::Files)) {
        const QString path = folder.filePath(name);
        if (isLink(path) || !isUnitOfEarlierVersions(name, contentsOf(path)))
            continue;
        QFile::remove(path);
        QFile::remove(folder.filePath(QStringLiteral("timers.target.wants/") + name));
        QFile::remove(stamps + QStringLiteral("/stamp-") + name);
        removed << name;
    }
    return removed;
}

} // namespace

void settleLoginUnit(const UserFolders& folders, const AnnouncerCommand& command,
                     const QDBusConnection& bus) {
    const QString units = folders.configuration + QStringLiteral("/systemd/user");
    install(units, loginUnit(command));
    const QStringList removed =
        removeEarlierVersions(units, folders.data + QStringLiteral("/systemd/timers"));
    for (const QString& unit : removed)
        bus.send(managerCall(QStringLiteral("StopUnit"), {unit, QStringLiteral("replace")}));
}

} // namespace dorvane

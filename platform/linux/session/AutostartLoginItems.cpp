// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/AutostartLoginItems.h"

#include "platform/linux/desktop/DesktopExec.h"
#include "platform/linux/preferences/AtomicFile.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <map>

namespace dorvane {

namespace {

const QString ownName = QStringLiteral("com.brackenfold.Dorvane");
const QString suffix = QStringLiteral(".desktop");

// The keys of a desktop file's main group.
std::map<QString, QString> desktopEntry(const QString& path) {
    std::map<QString, QString> entry;
    bool inside = false;
    const QString contents = QString::fromUtf8(PlainFile::read(path).contents);
    for (const QString& text : contents.split(QLatin1Char('\n'))) {
        const QString line = text.trimmed();
        if (line.startsWith(QLatin1Char('[')))
            inside = line == QStringLiteral("[Desktop Entry]");
        const auto equals = line.indexOf(QLatin1Char('='));
        if (inside && equals > 0)
            entry[line.left(equals).trimmed()] = line.mid(equals + 1).trimmed();
    }
    return entry;
}

bool isOn(std::map<QString, QString>& entry) {
    return entry[QStringLiteral("Hidden")] != QStringLiteral("true") &&
           entry[QStringLiteral("X-GNOME-Autostart-enabled")] != QStringLiteral("false");
}

// Empty when there is no such program.
QString bundleStartedBy(const QString& exec) {
    const QString command = programOfDesktopExec(exec);
    const QString program =
        command.contains(QLatin1Char('/')) ? command : QStandardPaths::findExecutable(command);
    const QString path = QFileInfo(program).canonicalFilePath();
    return path.isEmpty() ? QString() : QFileInfo(path).path();
}

const QString atLogin = QStringLiteral(" --login");

QByteArray desktopFile(const QString& program, const QString& options = atLogin) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Dorvane\n"
                          "Comment=Alarms and timers behind one small clock in the panel\n"
                          "Icon=com.brackenfold.Dorvane\n"
                          "TryExec=%1\n"
                          "Exec=%2\n")
        .arg(program, desktopExec(program) + options)
        .toUtf8();
}

} // namespace

AutostartLoginItems::AutostartLoginItems(const UserFolders& folders)
    : m_folder(folders.configuration + QStringLiteral("/autostart")) {}

void AutostartLoginItems::renew(const UserFolders& folders) {
    const QDir folder(folders.configuration + QStringLiteral("/autostart"));
    for (const QString& name : folder.entryList({ownName + u'*' + suffix}, QDir::Files)) {
        const QString path = folder.filePath(name);
        const QString program = desktopEntry(path)[QStringLiteral("TryExec")];
        if (PlainFile::read(path).contents != desktopFile(program, QString()))
            continue;
        if (const auto error = writeFileAtomically(path, desktopFile(program)))
            qCWarning(logPlatform).noquote() << "cannot write" << path << *error;
    }
}

std::vector<LoginItems::Item> AutostartLoginItems::snapshot() const {
    std::vector<Item> items;
    const QDir folder(m_folder);
    for (const QString& name : folder.entryList({u'*' + suffix}, QDir::Files, QDir::Name)) {
        auto entry = desktopEntry(folder.filePath(name));
        const QString bundle = bundleStartedBy(entry[QStringLiteral("Exec")]);
        if (isOn(entry) && !bundle.isEmpty())
            items.push_back({name, bundle});
    }
    return items;
}

bool AutostartLoginItems::insertFirst(const QString& bundlePath) {
    const QString path = m_folder + QLatin1Char('/') + freeName();
    std::optional<QString> error;
    if (!QDir().mkpath(m_folder))
        error = QStringLiteral("the folder cannot be made");
    else
        error = writeFileAtomically(path, desktopFile(bundlePath + QStringLiteral("/dorvane")));
    if (error)
        qCWarning(logPlatform).noquote() << "cannot write" << path << *error;
    return !error;
}

// Of our names the first that no other copy uses. A switched-off one, and one whose program is
// gone, may be taken over. Each sorts before the one that is tried first.
QString AutostartLoginItems::freeName() const {
    for (int number = 1;; ++number) {
        QString name =
            (number == 1 ? ownName : QStringLiteral("%1-%2").arg(ownName).arg(number)) + suffix;
        auto entry = desktopEntry(m_folder + QLatin1Char('/') + name);
        if (!isOn(entry) || bundleStartedBy(entry[QStringLiteral("Exec")]).isEmpty())
            return name;
    }
}

bool AutostartLoginItems::remove(const QString& identity) {
    QFile file(m_folder + QLatin1Char('/') + identity);
    if (file.remove())
        return true;
    qCWarning(logPlatform).noquote() << "cannot remove" << file.fileName() << file.errorString();
    return false;
}

void AutostartLoginItems::setChanged(std::function<void()> changed) {
    m_changed = std::move(changed);
    const auto tell = [this] {
        watch();
        m_changed();
    };
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, tell);
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, tell);
    watch();
}

// The folder tells of files that come and go, each file of what is written into it. One that is
// replaced drops out, and a folder that is not there yet is looked for from above.
void AutostartLoginItems::watch() {
    const QDir folder(m_folder);
    QStringList paths{folder.exists() ? m_folder : QFileInfo(m_folder).path()};
    for (const QString& name : folder.entryList({u'*' + suffix}, QDir::Files))
        paths << folder.filePath(name);
    m_watcher.addPaths(paths);
}

} // namespace dorvane

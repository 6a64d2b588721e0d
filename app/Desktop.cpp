// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Desktop.h"

#include "app/StatePaths.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"

#include <QDBusConnection>

namespace dorvane {

Desktop::Desktop()
    : bundle(mainBundle(propertyLists))
    , folders(xdgFolders())
    , defaults(folders.configuration + QStringLiteral("/Dorvane/com.brackenfold.Dorvane.plist"),
               propertyLists, runLoop)
    , journalFile(journalPath(folders), runLoop)
    , soundPlayer(runLoop, bundle.modulePath(QStringLiteral("dorvane_sound.so")))
    , soundOutput(runLoop, soundPlayer)
    , speech(runLoop, soundPlayer, bundle.modulePath(QStringLiteral("dorvane_speech.so")))
    , recorder(runLoop, bundle.modulePath(QStringLiteral("dorvane_recording.so")))
    , documents(runLoop, bundle.modulePath(QStringLiteral("dorvane_network.so")))
    , workspace(QDBusConnection::sessionBus())
    , announcer(runLoop, announcerCommand(bundle.bundlePath()), QDBusConnection::sessionBus())
    , notice(QDBusConnection::sessionBus())
    , loginItems(folders)
    , relocator(folders, QStringLiteral("/opt"))
    , urlSchemes(folders)
    , presence([this] { return awaySources(runLoop); })
    , probe(QDBusConnection::sessionBus())
    , appearance(QDBusConnection::sessionBus())
    , statusItem(runLoop, defaults, QDBusConnection::sessionBus()) {
    m_worker.setExpiryTimeout(0);
}

void Desktop::renewLoginItems() {
    m_worker.start([folders = folders] { AutostartLoginItems::renew(folders); });
}

} // namespace dorvane

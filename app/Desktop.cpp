// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Desktop.h"

#include "app/StatePaths.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"

namespace dorvane {

using namespace std::chrono_literals;

Desktop::Desktop()
    : sessionBus(QDBusConnection::sessionBus())
    , bundle(mainBundle(propertyLists))
    , folders(xdgFolders())
    , defaults(folders.configuration + QStringLiteral("/Dorvane/com.brackenfold.Dorvane.plist"),
               propertyLists, runLoop)
    , journalFile(journalPath(folders), runLoop)
    , soundPlayer(runLoop, bundle.modulePath(QStringLiteral("dorvane_sound.so")))
    , soundOutput(runLoop, soundPlayer)
    , speech(runLoop, soundPlayer, bundle.modulePath(QStringLiteral("dorvane_speech.so")))
    , recorder(runLoop, bundle.modulePath(QStringLiteral("dorvane_recording.so")))
    , documents(runLoop, bundle.modulePath(QStringLiteral("dorvane_network.so")))
    , workspace(sessionBus)
    , announcer(runLoop, announcerCommand(bundle.bundlePath()), sessionBus)
    , notice(sessionBus)
    , loginItems(folders)
    , relocator(folders, QStringLiteral("/opt"))
    , urlSchemes(folders)
    , presence([this] { return awaySources(runLoop); })
    , probe(sessionBus)
    , appearance(sessionBus)
    , statusItem(runLoop, defaults, sessionBus) {
    m_worker.setExpiryTimeout(0);
}

void Desktop::renewLoginItems() {
    m_worker.start([folders = folders] { AutostartLoginItems::renew(folders); });
}

// By another thread, because it waits for the bus.
void Desktop::sessionBusIsBack() {
    m_worker.start([this, name = QStringLiteral("session-%1").arg(++m_connections)] {
        const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        runLoop.post([this, bus] {
            if (!bus.isConnected()) {
                m_nextConnection = runLoop.scheduleOnce(
                    10s, [this] { sessionBusIsBack(); }, RunLoopMode::Common);
                return;
            }
            sessionBus = bus;
            workspace.setBus(bus);
            announcer.setBus(bus);
            notice.setBus(bus);
            probe.setBus(bus);
            appearance.setBus(bus);
            statusItem.setBus(bus);
        });
    });
}

} // namespace dorvane

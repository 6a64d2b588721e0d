// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"
#include "platform/linux/announcements/DesktopNotice.h"
#include "platform/linux/announcements/SystemdAnnouncer.h"
#include "platform/linux/desktop/DesktopWorkspace.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/linux/desktop/XdgUrlSchemes.h"
#include "platform/linux/network/ModuleDocumentFetcher.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/preferences/PropertyListDefaults.h"
#include "platform/linux/presence/SessionPresence.h"
#include "platform/linux/recording/ModuleAudioRecorder.h"
#include "platform/linux/relocate/UnixRelocator.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "platform/linux/session/BusDesktopProbe.h"
#include "platform/linux/session/KernelWakeAlarm.h"
#include "platform/linux/session/LogindPowerMonitor.h"
#include "platform/linux/session/LogindSleepInhibitor.h"
#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundOutput.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/linux/speech/ModuleSpeechService.h"
#include "platform/linux/state/BackgroundFile.h"
#include "platform/linux/tray/TrayStatusItem.h"
#include "platform/NotificationCenter.h"
#include "platform/UserFolders.h"

#include <QDBusConnection>
#include <QThreadPool>

namespace dorvane {

// The desktop that the program runs on: the real thing behind each interface of platform/. Needs
// the application object. Main thread only.
struct Desktop {
    Desktop();

    // The session bus is back, of which Qt's own connection does not learn: what asks there gets
    // another one, a moment later.
    void sessionBusIsBack();
    // Brings what earlier versions left for the login up to date.
    void renewLoginItems();

    QtRunLoop runLoop;
    QDBusConnection sessionBus;
    NotificationCenter notifications;
    PropertyListCodec propertyLists;
    Bundle bundle;
    UserFolders folders;
    PropertyListDefaults defaults;
    BackgroundFile journalFile;
    ModuleSoundPlayer soundPlayer;
    ModuleSoundOutput soundOutput;
    ModuleSpeechService speech;
    ModuleAudioRecorder recorder;
    ModuleDocumentFetcher documents;
    DesktopWorkspace workspace;
    SystemdAnnouncer announcer;
    DesktopNotice notice;
    AutostartLoginItems loginItems;
    UnixRelocator relocator;
    XdgUrlSchemes urlSchemes;
    LogindPowerMonitor powerMonitor;
    LogindSleepInhibitor sleepInhibitor;
    SessionPresence presence;
    KernelWakeAlarm wakeAlarm;
    BusDesktopProbe probe;
    PortalAppearance appearance;
    TrayStatusItem statusItem;

private:
    int m_connections = 0; // that were made since
    RunLoopTimer m_nextConnection;
    QThreadPool m_worker; // for what waits, and for which nobody waits
};

} // namespace dorvane

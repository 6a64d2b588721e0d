// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/LibplistFormat.h"
#include "platform/linux/LogindPowerMonitor.h"
#include "platform/linux/ModuleAudioRecorder.h"
#include "platform/linux/ModuleSoundPlayer.h"
#include "platform/linux/ModuleSpeechService.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/linux/PropertyListDefaults.h"
#include "platform/linux/QtRunLoop.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/XdgUrlSchemes.h"
#include "platform/NotificationCenter.h"
#include "platform/UserFolders.h"

namespace dorvane {

// The desktop that the program runs on: the real thing behind each interface of platform/. Needs
// the application object. Main thread only.
struct Desktop {
    Desktop();

    QtRunLoop runLoop;
    NotificationCenter notifications;
    LibplistFormat propertyLists;
    Bundle bundle;
    UserFolders folders;
    PropertyListDefaults defaults;
    ModuleSoundPlayer soundPlayer;
    ModuleSpeechService speech;
    ModuleAudioRecorder recorder;
    DesktopWorkspace workspace;
    XdgUrlSchemes urlSchemes;
    LogindPowerMonitor powerMonitor;
    PortalAppearance appearance;
    TrayStatusItem statusItem;
};

} // namespace dorvane

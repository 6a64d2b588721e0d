// SPDX-License-Identifier: GPL-3.0-or-later
// The shared instances of the break reminder.

#include "app/bfApp.h"
#include "app/Desktop.h"
#include "app/SharedInstances.h"
#include "breaks/BreakCycle.h"
#include "breaks/ClockBreaks.h"
#include "breaks/CustomModalWindowController.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "breaks/RespitoAudioPlayerController.h"
#include "breaks/RespitoReminderController.h"
#include "menubar/AlarmMenuController.h"
#include "platform/linux/tray/Xcb.h"
#include "platform/Log.h"
#include "sounds/AudioStorageController.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace dorvane {

namespace {

// The window that is being worked in. Any other may lie on another workspace, and the sheet would
// go there with it.
QWidget* sheetParent() {
    QWidget* const window = bfApp::activeWindow();
    const bool isOrdinary =
        window && (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog);
    return isOrdinary ? window : nullptr;
}

// On Wayland no window can ask to be above the others. On X11 it can, and some window managers put
// one that fills the screen above it all the same; under Plasma on Wayland X11 does not know of it.
bool isHidden(const QWidget& sheet) {
    if (sheet.isActiveWindow())
        return false;
    xcb_connection_t* const server = xcbConnection();
    const bool isPlasmaOnWayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
                                   qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(u"KDE");
    return !server || isPlasmaOnWayland ||
           xcbIsBehindFullScreen(server, static_cast<xcb_window_t>(sheet.winId()));
}

QString plain(const char* text) {
    return QCoreApplication::translate("CustomModalWindowController", text).remove(u'&');
}

void breakIsUnseen(bool isUnseen) {
    AlarmMenuController& menu = AlarmMenuController::mainMenuController();
    menu.breakIsUnseen(isUnseen);
    Notice& notice = sharedDesktop().notice;
    if (!isUnseen) {
        notice.withdraw();
        return;
    }
    const auto done = QStringLiteral("done");
    notice.show(plain("Time for a break"), QString(),
                {{done, plain("&Done")}, {QStringLiteral("stop"), plain("&Stop Respito")}},
                [&menu, done](const QString& key) {
                    if (key == done)
                        PendixRespitoWindowsController::sharedRespito().skipRespito();
                    else
                        menu.stopRespito();
                });
}

std::shared_ptr<BreakSheet> makeBreakSheet() {
    showWindowIcon();
    return std::make_shared<CustomModalWindowController>(
        sharedDesktop().runLoop, sheetParent(), isHidden,
        CustomModalWindowController::Actions{
            .disableRespito = [] { bfApp::sharedApplication().breakCycle().disableRespito(); },
            .createRespito = [] { AlarmMenuController::mainMenuController().createRespito(); },
            .unseen = breakIsUnseen});
}

// Whoever has chosen nothing hears the end of a break all the same.
void provideStopSound() {
    const QString path = PendixTakeABreakSettings::sharedInstance().defaultDurationSoundPath();
    if (QFile::exists(path))
        return;
    QDir().mkpath(QFileInfo(path).path());
    if (!QFile::copy(sharedDesktop().bundle.resourcePath(QStringLiteral("Sounds/Basso.aiff")),
                     path))
        qCWarning(logApp) << "cannot provide the sound at the end of a break:" << path;
}

} // namespace

PendixTakeABreakSettings& PendixTakeABreakSettings::sharedInstance() {
    static auto* const settings = [] {
        Desktop& desktop = sharedDesktop();
        qCInfo(logBreaks, "sharedInstance setup PendixDateSettings");
        return new PendixTakeABreakSettings(desktop.defaults, desktop.folders, desktop.runLoop,
                                            desktop.notifications);
    }();
    return *settings;
}

ClockBreaks& sharedClockBreaks() {
    static auto* const breaks =
        new ClockBreaks(sharedDesktop().runLoop, PendixTakeABreakSettings::sharedInstance(),
                        sharedDesktop().defaults, sharedDesktop().soundPlayer);
    return *breaks;
}

std::unique_ptr<BreakCycle> makeBreakCycle() {
    return std::make_unique<BreakCycle>(BreakCycle::Surroundings{
        .runLoop = sharedDesktop().runLoop,
        .settings = PendixTakeABreakSettings::sharedInstance(),
        .player = sharedDesktop().soundPlayer,
        .output = sharedDesktop().soundOutput,
        .notifications = sharedDesktop().notifications,
        .presence = sharedDesktop().presence,
        .track = sharedDesktop().bundle.resourcePath(QStringLiteral("Respito.mp3")),
        .makeSheet = makeBreakSheet});
}

PendixRespitoWindowsController& PendixRespitoWindowsController::sharedRespito() {
    static auto* const controller = [] {
        Desktop& desktop = sharedDesktop();
        provideStopSound();
        return new PendixRespitoWindowsController(
            {.runLoop = desktop.runLoop,
             .settings = PendixTakeABreakSettings::sharedInstance(),
             .cycle = bfApp::sharedApplication().breakCycle(),
             .clock = sharedClockBreaks(),
             .presence = desktop.presence,
             .defaults = desktop.defaults,
             .notifications = desktop.notifications,
             .bundle = desktop.bundle,
             .propertyLists = desktop.propertyLists,
             .player = desktop.soundPlayer,
             .library = AudioStorageController::sharedController(),
             .workspace = desktop.workspace,
             .audioPlayer = RespitoAudioPlayerController::sharedContorller,
             .showRecordingWindow =
                 [](const QWidget& owner) {
                     RespitoReminderController::sharedContorller().stayAbove(owner);
                     RespitoReminderController::sharedContorller().show();
                 },
             .beep = [] { bfApp::beep(); }});
    }();
    return *controller;
}

RespitoAudioPlayerController& RespitoAudioPlayerController::sharedContorller() {
    static auto* const controller = [] {
        showWindowIcon();
        Desktop& desktop = sharedDesktop();
        return new RespitoAudioPlayerController(desktop.runLoop, desktop.soundPlayer,
                                                desktop.bundle);
    }();
    return *controller;
}

RespitoReminderController& RespitoReminderController::sharedContorller() {
    static auto* const controller = [] {
        showWindowIcon();
        return new std::shared_ptr(RespitoReminderController::create(reminderSurroundings()));
    }();
    return **controller;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SharedInstances.h"

#include "app/bfApp.h"
#include "app/CheckWindow.h"
#include "app/Desktop.h"
#include "app/LastRun.h"
#include "app/LaunchAtLoginController.h"
#include "app/PrefController.h"
#include "app/StatePaths.h"
#include "app/UpdateChecker.h"
#include "breaks/BreakCycle.h"
#include "breaks/ClockBreaks.h"
#include "breaks/CustomModalWindowController.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "breaks/RespitoAudioPlayerController.h"
#include "breaks/RespitoReminderController.h"
#include "control/AlarmControl.h"
#include "core/ActiveAlarms.h"
#include "core/AlarmArchive.h"
#include "core/Clock.h"
#include "core/StoredAlarms.h"
#include "core/WakeUps.h"
#include "editor/AlarmSetController.h"
#include "firing/SoundRepeat.h"
#include "journal/Journal.h"
#include "menubar/AlarmMenuController.h"
#include "platform/linux/state/CrashReport.h"
#include "platform/Log.h"
#include "relocate/MoveToApplications.h"
#include "sounds/AudioStorageController.h"
#include "sounds/ReminderController.h"
#include "sounds/SoundLookup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>

// Every instance of which there is one: made on first use, on the main thread, and never destroyed,
// so that no order of destruction has to be right.

namespace dorvane {

namespace {

const AlarmArchive& alarmArchive() {
    static const auto* const archive = new AlarmArchive(sharedDesktop().propertyLists);
    return *archive;
}

ReminderController::Surroundings reminderSurroundings() {
    Desktop& desktop = sharedDesktop();
    return {.runLoop = desktop.runLoop,
            .notificationCenter = desktop.notifications,
            .recorder = desktop.recorder,
            .player = desktop.soundPlayer,
            .workspace = desktop.workspace,
            .bundle = desktop.bundle,
            .user = desktop.folders,
            .isSound = [](const QString& path) {
                return AudioStorageController::sharedController().soundFileTypes().isSound(path);
            }};
}

// With the first window that has a frame, so that a start does not pay for it.
void showWindowIcon() {
    if (bfApp::windowIcon().isNull())
        bfApp::setWindowIcon(
            QIcon(sharedDesktop().bundle.resourcePath(QStringLiteral("Dorvane.svg"))));
}

std::function<void(std::function<void(const UpdateResult&)>)> updateCheck() {
    UpdateChecker& checker = sharedUpdateChecker();
    if (!checker.isOn())
        return {};
    return [&checker](auto told) { checker.checkForUpdates(std::move(told)); };
}

void openChecks() {
    showWindowIcon();
    static auto* const window = new CheckWindow(sharedChecks(), sharedDesktop().bundle);
    window->show();
}

void openPreferences() {
    showWindowIcon();
    static auto* const preferences = [] {
        Desktop& desktop = sharedDesktop();
        return new PrefController(
            {.bundle = desktop.bundle,
             .launchAtLogin = LaunchAtLoginController::sharedController(),
             .manual = bfApp::sharedApplication().manualUrl(),
             .openUrl = [&desktop](const QUrl& url) { desktop.workspace.openUrl(url); },
             .checkForUpdates = updateCheck(),
             .wakesComputer = [] { return sharedWakeUps().isOn(); },
             .setWakesComputer = [](bool on) { sharedWakeUps().setOn(on); },
             .canWakeComputer =
                 [&desktop] { return desktop.wakeAlarm.ability() == WakeAlarm::Ability::Able; },
             .checkRinging = openChecks});
    }();
    preferences->show();
}

std::unique_ptr<AlarmSetController> makeEditor() {
    showWindowIcon();
    Desktop& desktop = sharedDesktop();
    return std::make_unique<AlarmSetController>(AlarmEditorServices{
        .runLoop = desktop.runLoop,
        .bundle = desktop.bundle,
        .storedAlarms = sharedStoredAlarms(),
        .soundPlayer = desktop.soundPlayer,
        .audioStorage = AudioStorageController::sharedController(),
        .speech = desktop.speech,
        .workspace = desktop.workspace,
        .notificationCenter = desktop.notifications,
        .propertyLists = desktop.propertyLists,
        .makeReminders = [] { return ReminderController::create(reminderSurroundings()); }});
}

// The reminder's own window, or else the one that is being worked in.
QWidget* sheetParent() {
    for (QWidget* window :
         {PendixRespitoWindowsController::sharedRespito().window(), bfApp::activeWindow()}) {
        const bool isOrdinary =
            window && (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog);
        if (isOrdinary && window->isVisible() && !window->isMinimized())
            return window;
    }
    return nullptr;
}

std::shared_ptr<BreakSheet> makeBreakSheet() {
    showWindowIcon();
    return std::make_shared<CustomModalWindowController>(
        sharedDesktop().runLoop, sheetParent(),
        CustomModalWindowController::Actions{
            .disableRespito = [] { bfApp::sharedApplication().breakCycle().disableRespito(); },
            .createRespito = [] { AlarmMenuController::mainMenuController().createRespito(); }});
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

bool breaksRun() {
    auto& settings = PendixTakeABreakSettings::sharedInstance();
    settings.loadPrefs();
    return settings.RespitoStatus() != 0;
}

void findNamedSound(const QString& nameOrPath, const AlarmControl::Found& found) {
    findSound(AudioStorageController::sharedController(), nameOrPath,
              [found](const std::variant<QString, SoundProblem>& sound) {
                  if (const auto* const problem = std::get_if<SoundProblem>(&sound))
                      found(Refusal{QStringLiteral("NoSuchSound"),
                                    QStringLiteral("\"sound\": ") + problem->text});
                  else
                      found(std::get<QString>(sound));
              });
}

void findNamedVoice(const QString& name, const AlarmControl::Found& found) {
    SpeechService& speech = sharedDesktop().speech;
    speech.whenVoicesKnown([&speech, name, found] {
        const QStringList names = speech.voiceNames();
        if (const qsizetype index = names.indexOf(name); index >= 0)
            found(names[index]);
        else
            found(Refusal{QStringLiteral("NoSuchVoice"),
                          QStringLiteral("\"voice\": no voice is called \"%1\"").arg(name)});
    });
}

} // namespace

Desktop& sharedDesktop() {
    static auto* const desktop = new Desktop;
    return *desktop;
}

Clock& Clock::sharedClock() {
    static auto* const clock = new Clock(sharedDesktop().runLoop, sharedDesktop().notifications);
    return *clock;
}

ActiveAlarms& sharedActiveAlarms() {
    static auto* const alarms = new ActiveAlarms(sharedDesktop().defaults, alarmArchive(),
                                                 sharedDesktop().runLoop, Clock::sharedClock());
    return *alarms;
}

Journal& sharedJournal() {
    static auto* const journal = [] {
        Desktop& desktop = sharedDesktop();
        return new Journal({.runLoop = desktop.runLoop,
                            .notifications = desktop.notifications,
                            .clock = Clock::sharedClock(),
                            .format = desktop.propertyLists,
                            .file = desktop.journalFile});
    }();
    return *journal;
}

LastRun& sharedLastRun() {
    static auto* const lastRun = [] {
        Desktop& desktop = sharedDesktop();
        return new LastRun(
            {.runLoop = desktop.runLoop,
             .activeAlarms = sharedActiveAlarms(),
             .journal = sharedJournal(),
             .workspace = desktop.workspace,
             .takeCrashReport = [&] { return takeCrashReport(stateFolder(desktop.folders)); },
             .schedule =
                 [](const AlarmPtr& alarm) {
                     AlarmMenuController::mainMenuController().scheduleAlarm(alarm);
                 },
             .prepareWindow = showWindowIcon});
    }();
    return *lastRun;
}

AlarmControl& sharedAlarmControl() {
    static auto* const control = [] {
        Desktop& desktop = sharedDesktop();
        AlarmMenuController& menu = AlarmMenuController::mainMenuController();
        const auto on = [&menu](void (AlarmMenuController::*command)(const AlarmPtr&)) {
            return [&menu, command](const AlarmPtr& alarm) { (menu.*command)(alarm); };
        };
        const auto made = new AlarmControl(
            {.runLoop = desktop.runLoop,
             .notifications = desktop.notifications,
             .clock = Clock::sharedClock(),
             .storedAlarms = sharedStoredAlarms(),
             .schedule = on(&AlarmMenuController::scheduleAlarm),
             .snooze = on(&AlarmMenuController::snoozeAlarm),
             .clear = on(&AlarmMenuController::clearAlarm),
             .end = on(&AlarmMenuController::clearFromMenu),
             .remove = on(&AlarmMenuController::deleteAlarm),
             .pingPath = [] { return AudioStorageController::sharedController().pingPath(); },
             .findSound = findNamedSound,
             .findVoice = findNamedVoice,
             .breaksRun = breaksRun,
             .startBreaks = [&menu] { menu.startRespito(); },
             .stopBreaks = [&menu] { menu.stopRespito(); },
             .skipBreak = [] { PendixRespitoWindowsController::sharedRespito().skipRespito(); }});
        static const auto observation = desktop.notifications.addObserver(
            breakSettingsDidChangeNotification, [made](const void*) { made->breaksChanged(); });
        return made;
    }();
    return *control;
}

StoredAlarms& sharedStoredAlarms() {
    static auto* const alarms =
        new StoredAlarms(sharedDesktop().defaults, alarmArchive(), sharedDesktop().notifications);
    return *alarms;
}

WakeUps& sharedWakeUps() {
    static auto* const wakeUps = [] {
        Desktop& desktop = sharedDesktop();
        return new WakeUps(desktop.runLoop, desktop.notifications, Clock::sharedClock(),
                           desktop.defaults, desktop.wakeAlarm);
    }();
    return *wakeUps;
}

WillItRing& sharedChecks() {
    static auto* const checks = [] {
        Desktop& desktop = sharedDesktop();
        return new WillItRing(
            {.runLoop = desktop.runLoop,
             .player = desktop.soundPlayer,
             .output = desktop.soundOutput,
             .speech = desktop.speech,
             .desktop = desktop.probe,
             .wakeAlarm = desktop.wakeAlarm,
             .alarms = [] { return Clock::sharedClock().allAlarms(); },
             .icon = [&desktop] { return std::optional(desktop.statusItem.whereShown()); },
             .startsAtLogin =
                 [] { return LaunchAtLoginController::sharedController().launchAtLogin(); },
             .isToWake = [] { return sharedWakeUps().isOn(); },
             .testSound = desktop.bundle.resourcePath(QStringLiteral("Sounds/Ping.aiff"))});
    }();
    return *checks;
}

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
    return std::make_unique<BreakCycle>(
        BreakCycle::Surroundings{.runLoop = sharedDesktop().runLoop,
                                 .settings = PendixTakeABreakSettings::sharedInstance(),
                                 .player = sharedDesktop().soundPlayer,
                                 .makeSheet = makeBreakSheet});
}

std::unique_ptr<MoveToApplications> makeMover() {
    Desktop& desktop = sharedDesktop();
    return std::make_unique<MoveToApplications>(MoveToApplications::Surroundings{
        .runLoop = desktop.runLoop,
        .defaults = desktop.defaults,
        .relocator = desktop.relocator,
        .moved =
            [](const QString& destination) {
                auto& login = LaunchAtLoginController::sharedController();
                if (!login.launchAtLogin())
                    return;
                login.setLaunchAtLogin(false);
                login.setLaunchAtLogin(true, destination);
            },
        .end = [] { bfApp::quit(); }});
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
             .defaults = desktop.defaults,
             .notifications = desktop.notifications,
             .bundle = desktop.bundle,
             .propertyLists = desktop.propertyLists,
             .player = desktop.soundPlayer,
             .repeat = sharedSoundRepeat(),
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

SoundRepeat& sharedSoundRepeat() {
    static auto* const repeat =
        new SoundRepeat(sharedDesktop().runLoop, sharedDesktop().soundPlayer);
    return *repeat;
}

UpdateChecker& sharedUpdateChecker() {
    static auto* const checker = [] {
        Desktop& desktop = sharedDesktop();
        return new UpdateChecker(
            {.fetcher = desktop.documents,
             .defaults = desktop.defaults,
             .feed = desktop.bundle.infoString(QStringLiteral("BFUpdateFeedURL")),
             .version = desktop.bundle.infoString(QStringLiteral("CFBundleShortVersionString")),
             .found = bfApp::showUpdate});
    }();
    return *checker;
}

AudioStorageController& AudioStorageController::sharedController() {
    static auto* const controller = [] {
        Desktop& desktop = sharedDesktop();
        return new AudioStorageController(desktop.runLoop, desktop.folders,
                                          SoundSources::installed(desktop.bundle),
                                          desktop.soundPlayer, desktop.workspace);
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

LaunchAtLoginController& LaunchAtLoginController::sharedController() {
    static auto* const controller = new LaunchAtLoginController(
        sharedDesktop().loginItems, sharedDesktop().bundle.bundlePath());
    return *controller;
}

AlarmMenuController& AlarmMenuController::mainMenuController() {
    static auto* const controller = [] {
        Desktop& desktop = sharedDesktop();
        bfApp& application = bfApp::sharedApplication();
        return new AlarmMenuController({
            .runLoop = desktop.runLoop,
            .notifications = desktop.notifications,
            .clock = Clock::sharedClock(),
            .storedAlarms = sharedStoredAlarms(),
            .statusItem = desktop.statusItem,
            .appearance = desktop.appearance,
            .bundle = desktop.bundle,
            .player = desktop.soundPlayer,
            .repeat = sharedSoundRepeat(),
            .speech = desktop.speech,
            .soundOutput = desktop.soundOutput,
            .sleepInhibitor = desktop.sleepInhibitor,
            .isSystemSound =
                [](const QString& path) {
                    return AudioStorageController::sharedController().isSystemSound(path);
                },
            .makeEditor = makeEditor,
            .presetSoundPath = [] { return AudioStorageController::sharedController().pingPath(); },
            .sharedRespito = []() -> PendixRespitoWindowsController& {
                showWindowIcon();
                return PendixRespitoWindowsController::sharedRespito();
            },
            .breakCycle = [&application]() -> BreakCycle& { return application.breakCycle(); },
            .breaksRun = breaksRun,
            .openPrefs = openPreferences,
            .showGoogleHelp = [&application] { application.showGoogleHelp(); },
            .terminate = [&application] { application.terminate(); },
            .ringing =
                [](RingEvent event, const AlarmPtr& alarm) {
                    sharedJournal().note(event, alarm);
                    sharedAlarmControl().befell(event, alarm);
                },
        });
    }();
    return *controller;
}

} // namespace dorvane

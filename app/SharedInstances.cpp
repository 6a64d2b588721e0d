// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SharedInstances.h"

#include "app/Announce.h"
#include "app/bfApp.h"
#include "app/CheckWindow.h"
#include "app/Desktop.h"
#include "app/LastRun.h"
#include "app/LaunchAtLoginController.h"
#include "app/PrefController.h"
#include "app/RingChoices.h"
#include "app/SoundUsers.h"
#include "app/StatePaths.h"
#include "app/UpdateChecker.h"
#include "breaks/BreakCycle.h"
#include "breaks/ClockBreaks.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "control/AlarmControl.h"
#include "core/ActiveAlarms.h"
#include "core/AlarmArchive.h"
#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "core/LastDeletion.h"
#include "core/RingPreferences.h"
#include "core/StoredAlarms.h"
#include "core/UsersNotificationManager.h"
#include "core/WakeUps.h"
#include "editor/AlarmSetController.h"
#include "firing/SoundRepeat.h"
#include "journal/Journal.h"
#include "menubar/AlarmMenuController.h"
#include "overview/AlarmsWindow.h"
#include "platform/linux/state/CrashReport.h"
#include "platform/Log.h"
#include "relocate/MoveToApplications.h"
#include "sounds/AudioStorageController.h"
#include "sounds/ReminderController.h"
#include "sounds/SoundLookup.h"
#include "widgets/Message.h"

#include <QIcon>

#include <algorithm>

// Every instance of which there is one: made on first use, on the main thread, and never destroyed,
// so that no order of destruction has to be right.

namespace dorvane {

namespace {

const AlarmArchive& alarmArchive() {
    static const auto* const archive = new AlarmArchive(sharedDesktop().propertyLists);
    return *archive;
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

RingDefaults ringDefaults() {
    const RingPreferences& preferences = sharedRingPreferences();
    const QString chosen = preferences.soundPath();
    return {chosen.isEmpty() ? AudioStorageController::sharedController().pingPath() : chosen,
            preferences.snooze()};
}

std::shared_ptr<ReminderController> makeReminders() {
    return ReminderController::create(reminderSurroundings());
}

QWidget* makeRingChoices() {
    Desktop& desktop = sharedDesktop();
    return new RingChoices({.runLoop = desktop.runLoop,
                            .player = desktop.soundPlayer,
                            .library = AudioStorageController::sharedController(),
                            .bundle = desktop.bundle,
                            .preferences = sharedRingPreferences(),
                            .makeReminders = makeReminders});
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
             .checkRinging = openChecks,
             .openBreaks = [] { AlarmMenuController::mainMenuController().createRespito(); },
             .ringChoices = makeRingChoices()});
    }();
    preferences->show();
}

void undoDeletion() {
    const auto title = sharedLastDeletion().title();
    if (!title)
        return;
    if (const QString problem = problemText(sharedLastDeletion().undo()); !problem.isEmpty())
        newMessage(QMessageBox::Information,
                   QStringLiteral("\"%1\" does not come back.").arg(*title),
                   problem.left(1).toUpper() + problem.mid(1) + u'.')
            ->show();
}

void openAlarms() {
    showWindowIcon();
    static auto* const window = [] {
        AlarmMenuController& menu = AlarmMenuController::mainMenuController();
        const auto onAlarm = [&menu](void (AlarmMenuController::*command)(const AlarmPtr&)) {
            return [&menu, command](const AlarmPtr& alarm) { (menu.*command)(alarm); };
        };
        return new AlarmsWindow(
            {.runLoop = sharedDesktop().runLoop,
             .notifications = sharedDesktop().notifications,
             .running = [] { return Clock::sharedClock().allAlarms(); },
             .stored =
                 [] { return sharedStoredAlarms().alarms().value_or(std::vector<AlarmPtr>()); },
             .summary = [&menu] { return menu.summary(); },
             .create = [&menu] { menu.createAlarm(); },
             .edit = onAlarm(&AlarmMenuController::editAlarm),
             .switchOn = onAlarm(&AlarmMenuController::setAlarm),
             .switchOff = onAlarm(&AlarmMenuController::switchOff),
             .skip = [&menu](const AlarmPtr& alarm) { menu.skipNext(alarm); },
             .duplicate = [&menu](const AlarmPtr& alarm) { return menu.duplicate(alarm); },
             .remove = [&menu](const AlarmPtr& running,
                               const AlarmPtr& stored) { menu.deleteAlarms(running, stored); },
             .undo = undoDeletion,
             .undoable = [] { return sharedLastDeletion().title(); }});
    }();
    window->present();
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
        .makeReminders = makeReminders,
        .ringDefaults = ringDefaults,
        .runs = [](const AlarmPtr& alarm) {
            return std::ranges::count(Clock::sharedClock().allAlarms(), alarm) > 0;
        }});
}

PendixTakeABreakSettings& breakSettings() {
    auto& settings = PendixTakeABreakSettings::sharedInstance();
    settings.loadPrefs();
    return settings;
}

bool breaksRun() {
    return breakSettings().RespitoStatus() != 0;
}

// On Wayland no window can ask to be above the others.
MakeNotice makeNotice() {
    if (!bfApp::platformName().startsWith(QStringLiteral("wayland")))
        return {};
    return [] { return std::make_unique<DesktopNotice>(sharedDesktop().sessionBus); };
}

// There is no cycle before the first start.
BreakOutlook breakOutlook() {
    return breaksRun() ? bfApp::sharedApplication().breakCycle().outlook() : BreakOutlook();
}

RemoteBreaks remoteBreaks() {
    using Phase = BreakOutlook::Phase;
    const BreakOutlook outlook = breakOutlook();
    switch (outlook.phase) {
    case Phase::Off:
        break;
    case Phase::Working:
        return {.phase = QStringLiteral("working"), .next = outlook.moment.toSecsSinceEpoch()};
    case Phase::Waiting:
        return {.phase = QStringLiteral("waiting")};
    case Phase::Resting:
        return {.phase = QStringLiteral("resting"), .end = outlook.moment.toSecsSinceEpoch()};
    }
    return {};
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

QStringList usersOfOneSound(const QString& path) {
    std::vector<AlarmPtr> alarms = Clock::sharedClock().allAlarms();
    for (const AlarmPtr& alarm : sharedStoredAlarms().alarms().value_or(std::vector<AlarmPtr>()))
        alarms.push_back(alarm);
    auto& breaks = PendixTakeABreakSettings::sharedInstance();
    breaks.loadPrefs();
    QStringList users = usersOfSound(path, alarms, breaks);
    if (sharedRingPreferences().soundPath() == path)
        users << QStringLiteral("new alarms");
    return users;
}

} // namespace

ReminderController::Surroundings reminderSurroundings() {
    Desktop& desktop = sharedDesktop();
    return {.runLoop = desktop.runLoop,
            .notificationCenter = desktop.notifications,
            .recorder = desktop.recorder,
            .player = desktop.soundPlayer,
            .workspace = desktop.workspace,
            .bundle = desktop.bundle,
            .user = desktop.folders,
            .isSound =
                [](const QString& path) {
                    return AudioStorageController::sharedController().soundFileTypes().isSound(
                        path);
                },
            .usersOf = usersOfOneSound};
}

void showWindowIcon() {
    if (bfApp::windowIcon().isNull())
        bfApp::setWindowIcon(
            QIcon(sharedDesktop().bundle.resourcePath(QStringLiteral("Dorvane.svg"))));
}

Desktop& sharedDesktop() {
    static auto* const desktop = new Desktop;
    return *desktop;
}

Clock& Clock::sharedClock() {
    static auto* const clock = new Clock(sharedDesktop().runLoop, sharedDesktop().notifications);
    return *clock;
}

AlarmPause& sharedPause() {
    static auto* const pause = new AlarmPause(sharedDesktop().runLoop,
                                              sharedDesktop().notifications, Clock::sharedClock());
    return *pause;
}

LastDeletion& sharedLastDeletion() {
    static auto* const deletion =
        new LastDeletion(sharedDesktop().runLoop, Clock::sharedClock(), sharedStoredAlarms());
    return *deletion;
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
                            .file = desktop.journalFile,
                            .pausedUntil = [] { return sharedPause().written(); }});
    }();
    return *journal;
}

LastRun& sharedLastRun() {
    static auto* const lastRun = [] {
        Desktop& desktop = sharedDesktop();
        return new LastRun(
            {.runLoop = desktop.runLoop,
             .activeAlarms = sharedActiveAlarms(),
             .pause = sharedPause(),
             .journal = sharedJournal(),
             .workspace = desktop.workspace,
             .lookAtPreferences =
                 [&desktop](auto looked) { desktop.defaults.lookAgain(std::move(looked)); },
             .announced = [&desktop] { return announcedAlarms(desktop.folders); },
             .takeCrashReport = [&] { return takeCrashReport(stateFolder(desktop.folders)); },
             .schedule =
                 [](const AlarmPtr& alarm) {
                     AlarmMenuController::mainMenuController().scheduleAlarm(alarm);
                 },
             .prepareWindow = showWindowIcon});
    }();
    return *lastRun;
}

// What runs is in the journal, what is stored in the preferences.
void saveAll(const UserDefaults::Written& saved) {
    sharedJournal().save([saved](const std::optional<QString>& problem) {
        if (problem)
            saved(problem);
        else
            sharedDesktop().defaults.synchronize(saved);
    });
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
             .pause = sharedPause(),
             .lastDeletion = sharedLastDeletion(),
             .schedule = on(&AlarmMenuController::scheduleAlarm),
             .start = [&menu](const Alarm& stored) { return menu.startStored(stored); },
             .snooze = [&menu](const AlarmPtr& alarm,
                               qint64 minutes) { menu.snoozeAlarm(alarm, minutes); },
             .quick = [&menu] { menu.quick(); },
             .clear = on(&AlarmMenuController::clearAlarm),
             .end = on(&AlarmMenuController::clearFromMenu),
             .remove = on(&AlarmMenuController::deleteAlarm),
             .replace = [&menu](const AlarmPtr& old,
                                const AlarmPtr& alarm) { menu.replaceAlarm(old, alarm); },
             .showAlarms = openAlarms,
             .skip = [&menu](const AlarmPtr& alarm) { return menu.skipNext(alarm); },
             .ringDefaults = ringDefaults,
             .findSound = findNamedSound,
             .findVoice = findNamedVoice,
             .save = saveAll,
             .breaksRun = breaksRun,
             .startBreaks = [&menu] { menu.startRespito(); },
             .stopBreaks = [&menu] { menu.stopRespito(); },
             .skipBreak = [] { PendixRespitoWindowsController::sharedRespito().skipRespito(); },
             .breaks = remoteBreaks});
        const auto breaksChanged = [made](const void*) { made->breaksChanged(); };
        static const auto settings =
            desktop.notifications.addObserver(breakSettingsDidChangeNotification, breaksChanged);
        static const auto breaks =
            desktop.notifications.addObserver(breaksDidChangeNotification, breaksChanged);
        return made;
    }();
    return *control;
}

StoredAlarms& sharedStoredAlarms() {
    static auto* const alarms =
        new StoredAlarms(sharedDesktop().defaults, alarmArchive(), sharedDesktop().notifications);
    return *alarms;
}

UsersNotificationManager& sharedUsersNotificationManager() {
    static auto* const manager = [] {
        Desktop& desktop = sharedDesktop();
        desktop.announcer.startAtLogin(desktop.folders);
        return new UsersNotificationManager(desktop.runLoop, desktop.notifications,
                                            Clock::sharedClock(), desktop.announcer);
    }();
    return *manager;
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
        .end = [] { bfApp::sharedApplication().terminate(); }});
}

RingPreferences& sharedRingPreferences() {
    static auto* const preferences = new RingPreferences(sharedDesktop().defaults);
    return *preferences;
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
            .prepareWindow = showWindowIcon,
            .ringDefaults = ringDefaults,
            .sharedRespito = []() -> PendixRespitoWindowsController& {
                showWindowIcon();
                return PendixRespitoWindowsController::sharedRespito();
            },
            .breakCycle = [&application]() -> BreakCycle& { return application.breakCycle(); },
            .breaksRun = breaksRun,
            .showAlarms = openAlarms,
            .openPrefs = openPreferences,
            .showGoogleHelp = [&application] { application.showGoogleHelp(); },
            .terminate = [&application] { application.terminate(); },
            .ringing =
                [](RingEvent event, const AlarmPtr& alarm) {
                    sharedJournal().note(event, alarm);
                    sharedAlarmControl().befell(event, alarm);
                },
            .cameRoundAgain =
                [](const AlarmPtr& alarm, const QDateTime& due) {
                    sharedJournal().noteCameRoundAgain(alarm, due);
                },
            .breakOutlook = breakOutlook,
            .showsBreaks = [] { return breakSettings().showRespito() != 0; },
            .pause = &sharedPause(),
            .lastDeletion = &sharedLastDeletion(),
            .makeNotice = makeNotice(),
            .volume = [] { return float(sharedRingPreferences().volume()) / 100; },
        });
    }();
    return *controller;
}

} // namespace dorvane

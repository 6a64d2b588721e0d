// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/bfApp.h"

#include "app/Desktop.h"
#include "app/LastRun.h"
#include "app/OwnAddress.h"
#include "app/SharedInstances.h"
#include "app/UpdateChecker.h"
#include "breaks/BreakCycle.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "control/AlarmControl.h"
#include "core/ActiveAlarms.h"
#include "core/NotificationNames.h"
#include "core/UsersNotificationManager.h"
#include "menubar/AlarmMenuController.h"
#include "platform/linux/session/LaunchRequest.h"
#include "platform/linux/session/ZoneData.h"
#include "platform/Log.h"
#include "relocate/MoveToApplications.h"
#include "widgets/Message.h"

#include <QPixmapCache>
#include <QPushButton>
#include <QSessionManager>
#include <QSysInfo>
#include <QTranslator>
#include <QUrl>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

bfApp::bfApp(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QStringLiteral("Dorvane"));
    setDesktopFileName(QStringLiteral("com.brackenfold.Dorvane"));
    setQuitOnLastWindowClosed(false);
    QPixmapCache::setCacheLimit(1024); // KiB; Qt puts each picture of a tray icon or clock there
}

bfApp::~bfApp() = default;

bfApp& bfApp::sharedApplication() {
    return *static_cast<bfApp*>(instance());
}

void bfApp::finishLaunching(Start start, const std::function<void()>& launched) {
    Desktop& desktop = sharedDesktop();
    loadTranslations(desktop.bundle);
    desktop.defaults.registerDefaults({{QStringLiteral("NSApplicationCrashOnExceptions"), true}});
    launch();
    m_isLaunched = true;
    launched();
    if (start == Start::ByLogin)
        return;
    // Beside everything else: nothing that rings or was asked for waits for an answer.
    m_moveOffer = desktop.runLoop.scheduleOnce(
        500ms,
        [this, &desktop] {
            m_mover = makeMover();
            m_mover->offer(desktop.bundle.bundlePath());
        },
        RunLoopMode::Default);
}

void bfApp::launch() {
    Desktop& desktop = sharedDesktop();
    watchForTheEnd();
    desktop.workspace.setNothingOpens(showWhereItLies);
    desktop.defaults.setFailing(showUnsaved);
    desktop.powerMonitor.setPoweredOn([&desktop] { desktop.notifications.post(wakeNotification); });

    AlarmMenuController& controller = AlarmMenuController::mainMenuController();
    ouputRunningInfo(desktop.bundle);
    if (const auto zone = zoneWithoutData(ZoneSources::ofThisProcess()))
        qCWarning(logApp).noquote()
            << "no time zone data for"
            << *zone + QStringLiteral(": every time is UTC, until tzdata is installed");
    // It starts programs of the desktop, which a start must not be slower for.
    m_schemeCheck = desktop.runLoop.scheduleOnce(
        2s,
        [this, &desktop] {
            checkEditorAssignments(desktop.bundle);
            desktop.renewLoginItems();
        },
        RunLoopMode::Default);
    m_updateCheck = desktop.runLoop.scheduleOnce(
        10s, [] { sharedUpdateChecker().checkForUpdatesInBackground(); }, RunLoopMode::Default);
    switchBreaksOff();
    restoreActiveAlarms();
    bringSoundsOver();
    (void)sharedUsersNotificationManager();
    controller.updateStatusView();
    (void)sharedWakeUps();
}

void bfApp::watchForTheEnd() {
    m_signals.emplace([this] { terminate(); });
    // However the loop ends, also when Qt ends it.
    connect(this, &QCoreApplication::aboutToQuit, this, [this] { finish(); });
    // The session may end without another word, or be kept after all.
    connect(
        this, &QGuiApplication::commitDataRequest, this,
        [this] { handOver(Journal::Ends::Perhaps); }, Qt::DirectConnection);
    connect(
        this, &QGuiApplication::saveStateRequest, this,
        [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); },
        Qt::DirectConnection);
}

// Of a language that has none the texts stay English.
void bfApp::loadTranslations(const Bundle& bundle) {
    const auto translator = new QTranslator(this);
    if (translator->load(QLocale(), QStringLiteral("dorvane"), QStringLiteral("_"),
                         bundle.resourcePath(QStringLiteral("translations"))))
        installTranslator(translator);
}

// A run that ended in the middle of a cycle has left it on, but there is no cycle yet.
void bfApp::switchBreaksOff() {
    auto& settings = PendixTakeABreakSettings::sharedInstance();
    settings.loadPrefs(); // or writing would reset the others
    if (!settings.RespitoStatus())
        return;
    settings.setRespitoStatus(0);
    settings.writePrefsAndSync();
}

BreakCycle& bfApp::breakCycle() {
    if (!m_breakCycle)
        m_breakCycle = makeBreakCycle();
    return *m_breakCycle;
}

void bfApp::terminate() {
    finish();
    quit();
}

void bfApp::finish() {
    if (m_hasEnded || !m_isLaunched)
        return;
    m_hasEnded = true;
    if (m_ending)
        m_ending();
    handOver(Journal::Ends::Now);
    sharedDesktop().recorder.finish();
}

void bfApp::open(const LaunchRequest& request) {
    const QString create = QStringLiteral("create-alarm");
    bool createsAlarm = request.action == create;
    for (const QString& address : request.uris) {
        const auto verb = verbOf(address, ownSchemes(sharedDesktop().bundle));
        createsAlarm = createsAlarm || verb == create;
        if (verb != create)
            qCWarning(logApp) << "nothing is known about" << address << "- the menu opens instead";
    }
    if (request.action == LaunchRequest::login)
        return;
    AlarmMenuController& controller = AlarmMenuController::mainMenuController();
    if (request.action == QStringLiteral("timer-5") && sharedAlarmControl().hasRoom())
        controller.createPreAlarm(5);
    else if (createsAlarm)
        controller.createAlarm();
    else
        controller.openMenu();
}

void bfApp::handOver(Journal::Ends ends) {
    storeActiveAlarms();
    sharedUsersNotificationManager().finish();
    // Before the journal says that everything is stored.
    const bool isStored = sharedDesktop().defaults.finish();
    sharedLastRun().end(isStored, ends);
}

void bfApp::storeActiveAlarms() {
    sharedAlarmControl().finish();
    sharedActiveAlarms().storeActiveAlarms();
}

void bfApp::restoreActiveAlarms() {
    sharedLastRun().restore(AlarmMenuController::mainMenuController());
}

QUrl bfApp::manualUrl() {
    const Bundle& bundle = sharedDesktop().bundle;
    const QUrl manual(bundle.infoString(QStringLiteral("BFManualURL")));
    const QUrl base = QUrl::fromLocalFile(bundle.bundlePath() + QLatin1Char('/'));
    return manual.isEmpty() ? manual : base.resolved(manual);
}

void bfApp::showGoogleHelp() {
    if (const QUrl manual = manualUrl(); !manual.isEmpty())
        sharedDesktop().workspace.openUrl(manual);
}

// A full disk, mostly. What is typed elsewhere goes on.
void bfApp::showUnsaved(const QString& problem) {
    QMessageBox* const alert = newMessage(
        QMessageBox::Warning, QStringLiteral("Your alarms cannot be saved at the moment."),
        QStringLiteral("What runs will ring, and Dorvane goes on trying to save it. What was "
                       "changed is lost if the computer is switched off before that succeeds.\n\n"
                       "The reason: %1")
            .arg(problem));
    alert->show();
    alert->raise();
}

// On a desktop without a browser, the manual above all.
void bfApp::showWhereItLies(const QUrl& url) {
    QMessageBox* const alert =
        newMessage(QMessageBox::Information, QStringLiteral("No program here opens this:"),
                   url.toDisplayString(QUrl::PreferLocalFile));
    alert->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    alert->show();
    alert->raise();
    alert->activateWindow();
}

void bfApp::showUpdate(const Release& release) {
    QMessageBox* const alert = newMessage(
        QMessageBox::Information, QStringLiteral("Dorvane %1 is available.").arg(release.version),
        QStringLiteral("It is described at %1.\nNothing is downloaded until you do so there.")
            .arg(release.link.host()));
    const auto open = alert->addButton(QStringLiteral("&Open Page"), QMessageBox::AcceptRole);
    alert->addButton(QMessageBox::Close);
    connect(open, &QPushButton::clicked, alert,
            [link = release.link] { sharedDesktop().workspace.openUrl(link); });
    alert->show();
    alert->raise();
}

QString bfApp::ouputRunningInfo(const Bundle& bundle) {
    QString name = bundle.infoString(QStringLiteral("CFBundleExecutable"));
    const QString system = QStringLiteral("%1 (%2)").arg(QSysInfo::prettyProductName(),
                                                         QSysInfo::currentCpuArchitecture());
    qCInfo(logApp).noquote() << QStringLiteral("%1 v%2 is running on %3")
                                    .arg(name, bundle.infoString(QStringLiteral("CFBundleVersion")),
                                         system);
    return name;
}

void bfApp::checkEditorAssignments(const Bundle& bundle) {
    const QVariantList types =
        bundle.infoDictionary().value(QStringLiteral("CFBundleURLTypes")).toList();
    const QVariant schemes = types.value(0).toMap().value(QStringLiteral("CFBundleURLSchemes"));
    if (!schemes.isValid()) {
        qCWarning(logApp, "Error - plist no setup correctly for schema--  add CFBundleURLTypes / "
                          "CFBundleURLSchemes keys");
        return;
    }
    UrlSchemes& handlers = sharedDesktop().urlSchemes;
    const QString& bundlePath = bundle.bundlePath();
    for (const QString& scheme : schemes.toStringList())
        handlers.applicationForScheme(
            scheme, [&handlers, scheme, bundlePath](const UrlSchemes::Handler& handler) {
                // At a first start nobody opens them, and that is no fault.
                if (handler.status != 0)
                    qCDebug(logApp, "error %d, %s// schema", handler.status, qPrintable(scheme));
                if (handler.status != 0 || handler.bundlePath != bundlePath)
                    handlers.registerBundle(bundlePath, scheme);
            });
}

} // namespace dorvane

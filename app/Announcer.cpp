// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Announcer.h"

#include "app/LaunchAtLoginController.h"
#include "app/StatePaths.h"
#include "core/UsersNotificationManager.h"
#include "journal/JournalFormat.h"
#include "platform/linux/announcements/LivingInstance.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "platform/Log.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// By then a program that starts at the login is there.
constexpr auto timeToStart = 2min;
// A desktop that is up shows announcements sooner than that.
constexpr auto timeToShow = 20s;
// A desktop that has not come up by then does not come up.
constexpr auto timeToComeUp = 10min;
// The clock may be wrong, and be set: the announcer is started then, but only while it is
// scheduled.
constexpr auto nothingAhead = std::chrono::days(30);
constexpr auto lengthOfThreePings = 6s;
constexpr int rings = 3;

} // namespace

Announcer::Announcer()
    : m_bundle(mainBundle(m_propertyLists))
    , m_folders(xdgFolders())
    , m_bus(QDBusConnection::sessionBus())
    , m_scheduler(m_loop, announcerCommand(m_bundle.bundlePath()), m_bus)
    , m_announced(announcedPath(m_folders))
    , m_player(m_loop, m_bundle.modulePath(QStringLiteral("dorvane_sound.so")))
    , m_repeat(m_loop, m_player) {}

void Announcer::begin(AnnounceAt moment) {
    m_moment = moment;
    if (moment == AnnounceAt::Login && startsAtLogin())
        return leaveItToTheProgram();
    askForLife(m_bus, m_context, [this](bool isAlive) { isAlive ? end() : look(); });
}

bool Announcer::startsAtLogin() {
    AutostartLoginItems items(m_folders);
    return LaunchAtLoginController(items, m_bundle.bundlePath()).launchAtLogin();
}

// What cannot be read of it is kept for the program, and put aside there.
JournalContents Announcer::journal() const {
    const PlainFile file = PlainFile::read(journalPath(m_folders));
    return JournalFormat(m_propertyLists).decode(file.contents).contents;
}

// It may not start after all.
void Announcer::leaveItToTheProgram() {
    if (!journal().running.empty())
        m_scheduler.scheduleAnnouncer(
            m_loop.now().addSecs(std::chrono::seconds(timeToStart).count()));
    end();
}

// Before anything else it is seen to that the announcer is started again, however this one ends.
void Announcer::look() {
    const bool isAlone = m_announced.acquire();
    if (!m_told)
        m_told = toldIn(m_announced.read());
    const Instant now = instantNow(m_loop);
    m_plan = planAnnouncements(journal(), *m_told, now);
    std::optional<QDateTime> next;
    if (m_plan.next || m_plan.hasAlarms)
        next = localDateTimeOf(m_plan.next.value_or(now + nothingAhead) +
                               UsersNotificationManager::delay);
    m_scheduler.scheduleAnnouncer(next);
    if (m_plan.notifications.empty() || !isAlone)
        return end(); // who has the file looks again once everything is shown
    show(m_plan.notifications);
}

void Announcer::show(const std::vector<UserNotification>& notifications) {
    m_shown = 0;
    m_presenters.clear();
    for (const UserNotification& notification : notifications) {
        m_presenters.push_back(std::make_unique<AnnouncementPresenter>(
            m_loop, notification, m_bus, [this](auto outcome) { shown(outcome); }));
        m_presenters.back()->show();
    }
    // Somebody may wait for it, and hear it at least. At a login nobody does.
    if (m_moment == AnnounceAt::DueTime)
        m_alone = m_loop.scheduleOnce(
            timeToShow, [this] { playPings(); }, RunLoopMode::Default);
    m_giveUp = m_loop.scheduleOnce(
        timeToComeUp,
        [this] {
            qCWarning(logApp, "nobody shows announcements");
            m_isToSound = m_isRefused = true;
            remember();
        },
        RunLoopMode::Default);
}

void Announcer::shown(AnnouncementPresenter::Outcome outcome) {
    using Outcome = AnnouncementPresenter::Outcome;
    m_isToSound = m_isToSound || outcome != Outcome::Shown;
    m_isRefused = m_isRefused || outcome == Outcome::Refused;
    if (++m_shown == m_presenters.size())
        remember();
}

void Announcer::remember() {
    m_alone.cancel();
    m_giveUp.cancel();
    const auto before = std::exchange(*m_told, m_plan.told);
    for (ToldAlarm& told : *m_told)
        if (m_isRefused && std::find(before.begin(), before.end(), told) == before.end())
            told.wasShown = false;
    m_announced.write(encoded(*m_told));
    // What nobody can see is to be heard all the same.
    if (m_isToSound && !m_isHeard)
        playPings();
    m_isToSound = m_isHeard = false;
    // More may have fallen due meanwhile; and this may be called by a presenter.
    m_loop.defer([this] { look(); });
}

void Announcer::playPings() {
    m_isHeard = true;
    m_repeat.playSoundAtPath(m_bundle.resourcePath(QStringLiteral("Sounds/Ping.aiff")), rings);
    m_rest = m_loop.scheduleOnce(
        lengthOfThreePings,
        [this] {
            m_rest.cancel();
            if (m_isEnding)
                end();
        },
        RunLoopMode::Default);
}

void Announcer::end() {
    m_isEnding = true;
    if (m_rest)
        return;
    m_scheduler.whenSettled(
        [this] { QCoreApplication::exit(m_isRefused ? EXIT_FAILURE : EXIT_SUCCESS); });
}

std::vector<ToldAlarm> announcedAlarms(const UserFolders& folders) {
    return toldIn(AnnouncedFile(announcedPath(folders)).read());
}

int announce(int argc, char** argv, AnnounceAt moment) {
    const QCoreApplication application(argc, argv);
    Announcer announcer;
    announcer.begin(moment);
    const int status = QCoreApplication::exec();
    std::fflush(nullptr);
    std::_Exit(status); // the sound engine's threads wait for nobody
}

} // namespace dorvane

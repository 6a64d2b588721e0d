// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/announcements/AnnouncementUnits.h"
#include "platform/RunLoop.h"
#include "platform/UserFolders.h"
#include "platform/UserNotificationCenter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QThreadPool>

#include <functional>

namespace dorvane {

// The announcer as a service of the user's systemd: one timer, which the manager holds in memory
// and no file knows of. It also starts the announcer when the clock is set, since what was ahead by
// a wrong clock may have passed by the right one, and the other way round.
class SystemdAnnouncer final : public UserNotificationCenter {
public:
    // `bus` is the session's. The run loop must outlive this.
    SystemdAnnouncer(RunLoop& runLoop, AnnouncerCommand command, QDBusConnection bus);

    // The new timer runs before the old one is stopped: an end of the process between the two
    // leaves one too many. A moment that has passed, or is about to, is taken for one right ahead.
    void scheduleAnnouncer(const std::optional<QDateTime>& moment) override;

    // Another connection, once the first has gone: schedules on it what was scheduled last.
    void setBus(QDBusConnection bus);

    // Sees to it, by a thread of its own, that the announcer also starts at each login, for what
    // the manager holds in memory is gone by then; see settleLoginUnit().
    void startAtLogin(const UserFolders& folders);

    // Calls back once, when the manager has answered everything that it is being asked, or does
    // not; not from inside this call.
    void whenSettled(std::function<void()> settled);

private:
    [[nodiscard]] QDBusMessage start(const QString& name, const QDateTime& moment) const;
    void stopBefore(const QString& name);
    void stop(const QDBusMessage& listed, const QString& name);
    void ask(const QDBusMessage& call, std::function<void(const QDBusMessage& reply)> answered);

    RunLoop& m_runLoop;
    const AnnouncerCommand m_command;
    QDBusConnection m_bus;
    std::optional<QDateTime> m_moment;   // that is scheduled
    std::chrono::milliseconds m_made{0}; // when the last timer was, since the machine's boot
    int m_unanswered = 0;
    bool m_isFailing = false;
    std::function<void()> m_settled;
    QObject m_context;
    QThreadPool m_worker; // one thread; last, so that nothing of the above goes before its job
};

} // namespace dorvane

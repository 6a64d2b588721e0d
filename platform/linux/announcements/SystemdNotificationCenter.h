// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/UserFolders.h"
#include "platform/UserNotificationCenter.h"

#include <QDBusConnection>
#include <QStringList>

namespace dorvane {

// Announcements as timers of the user's systemd, which run this program with --announce.
class SystemdNotificationCenter final : public UserNotificationCenter {
public:
    // `bus` is the session's; `program` the full path of this program. The run loop must outlive
    // this.
    SystemdNotificationCenter(RunLoop& runLoop, const UserFolders& folders, QString program,
                              QDBusConnection bus);

    void replaceScheduledNotifications(const std::vector<UserNotification>& notifications) override;

    // The file that holds the announcement with this identity.
    [[nodiscard]] static QString fileOf(const UserFolders& folders, const QString& id);

private:
    [[nodiscard]] QStringList withdraw();
    [[nodiscard]] bool write(const std::vector<UserNotification>& notifications);
    void tell(const QString& method, const QVariantList& arguments);

    RunLoop& m_runLoop;
    QString m_units;  // the folder of the user's units
    QString m_stamps; // where the manager notes when its persistent timers ran
    QString m_program;
    QDBusConnection m_bus;
    RunLoopTimer m_forget;
};

} // namespace dorvane

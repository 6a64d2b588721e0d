// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/UserNotification.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

class QDBusPendingCallWatcher;

namespace dorvane {

// Has the desktop show one announcement now, and waits for a desktop that is only just starting.
// Main thread only.
class AnnouncementPresenter final : public QObject {
public:
    enum class Outcome {
        Shown,       // and the desktop makes a sound of its own
        ShownSilent, // it does not
        Refused
    };

    // The run loop must outlive the presenter.
    AnnouncementPresenter(RunLoop& runLoop, UserNotification notification, QDBusConnection bus,
                          std::function<void(Outcome)> done);

    // Asks for it; `done` follows once. Where nobody shows notifications yet, it is asked for again
    // until somebody does.
    void show();

private:
    void notify(const QStringList& capabilities);
    void answered(const QDBusPendingCallWatcher& call, bool makesSound);

    RunLoop& m_runLoop;
    UserNotification m_notification;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    std::function<void(Outcome)> m_done;
    bool m_isAsking = false;
    RunLoopTimer m_again;
};

} // namespace dorvane

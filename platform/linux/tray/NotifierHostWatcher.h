// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QDBusPendingCallWatcher;

namespace dorvane {

// Whether a panel that shows StatusNotifierItems is there. Only asks, and never waits for the
// answer. Main thread only.
class NotifierHostWatcher final : public QObject {
    Q_OBJECT

public:
    // Unknown until the first answer, and for as long as a watcher is there that does not answer.
    enum class Host { Unknown, Absent, Present };

    // `changed` is called after host() changed, never from inside this constructor.
    NotifierHostWatcher(QDBusConnection bus, std::function<void()> changed);
    ~NotifierHostWatcher() override;

    [[nodiscard]] Host host() const { return m_host; }

    // Another connection, once the first has gone.
    void setBus(QDBusConnection bus);

private Q_SLOTS:
    void ask();
    void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);
    void watcherGone();

private:
    void listen();
    void answered(const QDBusPendingCallWatcher& call);
    void setHost(Host host);

    QDBusConnection m_bus;
    std::function<void()> m_changed;
    std::unique_ptr<QDBusPendingCallWatcher> m_call; // a newer question replaces it
    Host m_host = Host::Unknown;
};

} // namespace dorvane

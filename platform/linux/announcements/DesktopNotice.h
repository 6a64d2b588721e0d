// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Notice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace dorvane {

// A notification at org.freedesktop.Notifications. It is shown anew where another takes over from
// whoever showed it.
class DesktopNotice final : public QObject, public Notice {
    Q_OBJECT

public:
    explicit DesktopNotice(QDBusConnection bus) : m_bus(std::move(bus)) {}
    ~DesktopNotice() override { withdraw(); }

    // Another connection, once the first has gone, on which what is to be seen is shown anew.
    void setBus(QDBusConnection bus);

    void show(const QString& title, const QString& text, const std::vector<Action>& actions,
              std::function<void(const QString& key)> chosen) override;
    void withdraw() override;

private Q_SLOTS:
    void actionInvoked(uint id, const QString& key, const QDBusMessage& signal);
    void ownerChanged(const QString& name, const QString& former, const QString& owner);

private:
    void listen();
    void notify();
    void shown(uint id, const QString& shower);
    static void close(const QDBusConnection& bus, const QString& shower, uint id);

    QDBusConnection m_bus;
    QString m_title;
    QString m_text;
    QStringList m_keysAndLabels;
    std::function<void(const QString& key)> m_chosen; // while one is shown
    uint m_id = 0;                                    // of the one that is shown; 0 for none
    QString m_shower;                                 // the unique name of who shows it
    QStringList m_keys;                               // that can be chosen
    int m_shows = 0;
    bool m_isListening = false;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/presence/AwaySource.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

class QDBusMessage;

namespace dorvane {

// What logind is told of the session by its desktop: that it is locked, or that it idles.
class LogindSession final : public QObject, public AwaySource {
    Q_OBJECT

public:
    // The run loop must outlive it.
    LogindSession(RunLoop& runLoop, QDBusConnection systemBus)
        : m_runLoop(runLoop), m_bus(std::move(systemBus)) {}

    void watch(Told told) override;

private Q_SLOTS:
    void look();

private:
    void ask(const QDBusMessage& call, const std::function<void(const QVariant& answer)>& then);
    void findSession(const QString& id);
    void listen(const QString& path);
    void take(const QVariantMap& properties);

    RunLoop& m_runLoop;
    QDBusConnection m_bus;
    Told m_told;
    QString m_path;
    bool m_isKnown = false;
    bool m_isLocked = false;
    bool m_isIdle = false;
    std::optional<RunLoop::Milliseconds> m_since;
};

} // namespace dorvane

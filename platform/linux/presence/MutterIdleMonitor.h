// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/presence/AwaySource.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace dorvane {

// GNOME's shell, on Wayland and on X, which counts from the last key or movement.
class MutterIdleMonitor final : public QObject, public AwaySource {
    Q_OBJECT

public:
    // The run loop must outlive it.
    MutterIdleMonitor(RunLoop& runLoop, QDBusConnection bus);

    void watch(Told told) override;

private Q_SLOTS:
    void watchFired(uint id);

private:
    void add(const QString& method, const QVariantList& arguments,
             const std::function<void(uint id)>& added);
    void begin();

    RunLoop& m_runLoop;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    Told m_told;
    uint m_idleWatch = 0; // numbers begin at 1
    uint m_activeWatch = 0;
};

} // namespace dorvane

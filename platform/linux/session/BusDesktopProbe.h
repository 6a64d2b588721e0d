// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/DesktopProbe.h"

#include <QDBusConnection>
#include <QObject>

namespace dorvane {

// Asks the two buses who is there, and the kernel about its clock.
class BusDesktopProbe final : public DesktopProbe {
public:
    explicit BusDesktopProbe(QDBusConnection sessionBus) : m_session(std::move(sessionBus)) {}

    // Another connection, once the first has gone.
    void setBus(QDBusConnection sessionBus) { m_session = std::move(sessionBus); }

    void ask(std::function<void(const DesktopAbilities&)> done) override;

private:
    QObject m_context; // of the answers
    QDBusConnection m_session;
};

} // namespace dorvane

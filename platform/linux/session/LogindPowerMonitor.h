// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PowerMonitor.h"

#include <QObject>

#include <functional>

namespace dorvane {

// Wake-ups as logind tells of them on the system bus.
class LogindPowerMonitor final : public QObject, public PowerMonitor {
    Q_OBJECT

public:
    // Goes to the bus in the next turn of the main loop, so that a start does not wait for it.
    LogindPowerMonitor();

    void setPoweredOn(std::function<void()> poweredOn) override;

private Q_SLOTS:
    void prepareForSleep(bool goingToSleep);

private:
    void listen();

    std::function<void()> m_poweredOn;
};

} // namespace dorvane

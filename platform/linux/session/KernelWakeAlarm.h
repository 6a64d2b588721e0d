// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WakeAlarm.h"

#include <QString>

namespace dorvane {

// A timer of the kernel on CLOCK_REALTIME_ALARM, which needs CAP_WAKE_ALARM. Nobody waits for it:
// it wakes the machine, not the process, which has timers of its own.
class KernelWakeAlarm final : public WakeAlarm {
public:
    // `clocks` is where the kernel lists the machine's clocks.
    explicit KernelWakeAlarm(QString clocks = QStringLiteral("/sys/class/rtc"));
    ~KernelWakeAlarm() override;
    KernelWakeAlarm(const KernelWakeAlarm&) = delete;
    KernelWakeAlarm& operator=(const KernelWakeAlarm&) = delete;

    [[nodiscard]] Ability ability() const override;
    void arm(const std::optional<QDateTime>& moment) override;

private:
    const QString m_clocks;
    int m_timer = -1; // while something is armed
};

} // namespace dorvane

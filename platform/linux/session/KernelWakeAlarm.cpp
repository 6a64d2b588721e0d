// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/KernelWakeAlarm.h"

#include "platform/Log.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

namespace {

int makeTimer() {
    return timerfd_create(CLOCK_REALTIME_ALARM, TFD_CLOEXEC | TFD_NONBLOCK);
}

// The kernel takes the timer without one, too.
bool hasWakingClock(const QString& clocks) {
    for (const QString& clock : QDir(clocks).entryList({QStringLiteral("rtc*")})) {
        QFile wakes(clocks + QLatin1Char('/') + clock + QStringLiteral("/device/power/wakeup"));
        if (wakes.open(QIODevice::ReadOnly) && wakes.readAll().trimmed() == "enabled")
            return true;
    }
    return false;
}

} // namespace

KernelWakeAlarm::KernelWakeAlarm(QString clocks) : m_clocks(std::move(clocks)) {}

KernelWakeAlarm::~KernelWakeAlarm() {
    arm(std::nullopt);
}

WakeAlarm::Ability KernelWakeAlarm::ability() const {
    if (m_timer < 0) {
        const int timer = makeTimer();
        if (timer < 0)
            return errno == EPERM ? Ability::NotPermitted : Ability::NoClock;
        ::close(timer);
    }
    return hasWakingClock(m_clocks) ? Ability::Able : Ability::NoClock;
}

void KernelWakeAlarm::arm(const std::optional<QDateTime>& moment) {
    if (!moment) {
        if (m_timer >= 0)
            ::close(std::exchange(m_timer, -1));
        return;
    }
    if (m_timer < 0)
        m_timer = makeTimer();
    itimerspec when{};
    when.it_value.tv_sec = moment->toSecsSinceEpoch();
    if (m_timer < 0 || timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &when, nullptr) < 0)
        qCInfo(logPlatform, "The machine is not woken for alarms: %s", std::strerror(errno));
}

} // namespace dorvane

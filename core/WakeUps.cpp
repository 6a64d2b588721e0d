// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WakeUps.h"

#include "core/Clock.h"
#include "core/NearestDue.h"
#include "core/NotificationNames.h"
#include "platform/UserDefaults.h"
#include "platform/WakeAlarm.h"

namespace dorvane {

namespace {

const auto key = QStringLiteral("WakesComputer");

} // namespace

WakeUps::WakeUps(RunLoop& runLoop, NotificationCenter& notifications, Clock& clock,
                 UserDefaults& defaults, WakeAlarm& wakeAlarm)
    : m_runLoop(runLoop), m_clock(clock), m_defaults(defaults), m_wakeAlarm(wakeAlarm) {
    m_changes =
        notifications.addObserver(alarmsDidChangeNotification, [this](const void*) { update(); });
    update();
}

bool WakeUps::isOn() const {
    return m_defaults.value(key).toBool();
}

void WakeUps::setOn(bool on) {
    m_defaults.setValue(key, on);
    m_defaults.synchronize();
    update();
}

void WakeUps::update() {
    const auto next =
        isOn() ? nearestDue(m_clock.allAlarms(), instantNow(m_runLoop)) : std::nullopt;
    const auto moment = next ? std::optional(localDateTimeOf(*next)) : std::nullopt;
    if (moment == m_armed)
        return;
    m_armed = moment;
    m_wakeAlarm.arm(moment);
    m_passed.cancel();
    if (moment)
        m_passed = m_runLoop.scheduleAt(
            *moment, [this] { update(); }, RunLoopMode::Common);
}

} // namespace dorvane

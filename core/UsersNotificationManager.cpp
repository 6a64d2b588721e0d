// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UsersNotificationManager.h"

#include "core/Clock.h"
#include "core/NearestDue.h"
#include "core/NotificationNames.h"
#include "platform/UserNotificationCenter.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

UsersNotificationManager::UsersNotificationManager(RunLoop& runLoop,
                                                   NotificationCenter& notifications,
                                                   const Clock& clock,
                                                   UserNotificationCenter& center)
    : m_runLoop(runLoop)
    , m_center(center)
    , m_changed(
          runLoop, 100ms, [this, &clock] { synchronizeWithAlarms(clock.allAlarms()); },
          RunLoopMode::Common) {
    m_changes = notifications.addObserver(
        alarmsDidChangeNotification, [this](const void*) { m_changed.request(); }, &clock);
    m_changed.request();
}

void UsersNotificationManager::synchronizeWithAlarms(const std::vector<AlarmPtr>& alarms) {
    const auto next = nearestDue(alarms, instantNow(m_runLoop) - doubt);
    const auto nearest = next ? std::optional(localDateTimeOf(*next)) : std::nullopt;
    if (std::exchange(m_isScheduled, true) && nearest == m_nearest)
        return;
    m_nearest = nearest;
    m_passed.cancel();
    m_center.scheduleAnnouncer(nearest ? std::optional(nearest->addSecs(delay.count()))
                                       : std::nullopt);
    if (nearest)
        m_passed = m_runLoop.scheduleAt(
            nearest->addSecs(doubt.count()), [this] { m_changed.request(); }, RunLoopMode::Common);
}

} // namespace dorvane

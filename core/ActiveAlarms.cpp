// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"
#include "core/Rearm.h"

namespace dorvane {

ActiveAlarms::ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive,
                           const RunLoop& runLoop, Clock& clock)
    // Preferences of earlier versions use this spelling.
    : m_list(QStringLiteral("AcitveAlarmsStoredKey"), defaults, archive)
    , m_runLoop(runLoop)
    , m_clock(clock) {}

void ActiveAlarms::storeActiveAlarms() {
    m_list.save(m_clock.allAlarms());
}

void ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate) {
    const auto stored = m_list.load();
    if (!stored)
        return;
    const QDateTime now = m_runLoop.now();
    const QString today = weekdayName(now.date());
    for (const AlarmPtr& alarm : *stored) {
        const RearmDecision decision = rearmAtRestore(*alarm, now, today);
        if (decision.outcome == RearmDecision::Outcome::Remove)
            continue;
        applyRearm(decision, *alarm);
        // Each goes to the front, so that the list comes back in reverse.
        m_clock.insertAlarm(alarm);
        alarm->setDelegate(&delegate);
    }
}

} // namespace dorvane

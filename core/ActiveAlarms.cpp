// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"

namespace dorvane {

ActiveAlarms::ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                           Clock& clock)
    // Preferences of earlier versions use this spelling.
    : m_list(QStringLiteral("AcitveAlarmsStoredKey"), defaults, archive)
    , m_clock(clock)
    , m_restored(runLoop, clock) {}

void ActiveAlarms::storeActiveAlarms() {
    m_list.save(m_clock.allAlarms());
}

void ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate) {
    const auto stored = m_list.load();
    m_hadStored = stored.has_value();
    m_restored.restore(stored.value_or(std::vector<AlarmPtr>()), delegate);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"

namespace dorvane {

ActiveAlarms::ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                           Clock& clock)
    : m_defaults(defaults), m_archive(archive), m_clock(clock), m_restored(runLoop, clock) {}

// Preferences of earlier versions use this spelling.
ArchivedList ActiveAlarms::list() const {
    return {QStringLiteral("AcitveAlarmsStoredKey"), m_defaults, m_archive};
}

void ActiveAlarms::storeActiveAlarms() {
    list().save(m_clock.allAlarms());
}

void ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate) {
    const auto stored = list().load();
    m_hadStored = stored.has_value();
    m_restored.restore(stored.value_or(std::vector<AlarmPtr>()), delegate);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmSetPreController.h"

#include "core/AlarmBuilding.h"
#include "core/StoredAlarms.h"
#include "platform/RunLoop.h"

namespace dorvane {

AlarmSetPreController::AlarmSetPreController(const RunLoop& runLoop, StoredAlarms& library,
                                             RingDefaults ring, AlarmPresetDelegate& delegate)
    : m_runLoop(runLoop), m_library(library), m_ring(std::move(ring)), m_delegate(delegate) {}

void AlarmSetPreController::setDefault(int minutes) {
    m_delegate.acceptedPreAlarm(*this, saveCurrentAlarm(minutes));
}

AlarmPtr AlarmSetPreController::saveCurrentAlarm(int minutes) {
    const QDateTime now = m_runLoop.now();
    AlarmPtr alarm = quickAlarm(minutes, m_ring, now);
    m_library.put(*alarm, instantOf(now));
    return alarm;
}

} // namespace dorvane

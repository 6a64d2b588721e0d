// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LastDeletion.h"

#include "core/Clock.h"
#include "core/Rearm.h"
#include "core/StoredAlarms.h"

#include <algorithm>
#include <utility>

namespace dorvane {

LastDeletion::LastDeletion(const RunLoop& runLoop, Clock& clock, StoredAlarms& storedAlarms)
    : m_runLoop(runLoop), m_clock(clock), m_storedAlarms(storedAlarms) {}

void LastDeletion::remember(const AlarmPtr& running, const AlarmPtr& stored) {
    const auto& alarms = m_clock.allAlarms();
    const auto found = std::find(alarms.begin(), alarms.end(), running);
    if (found == alarms.end() && !stored)
        return;
    m_running = found == alarms.end() ? nullptr : running;
    m_index = int(found - alarms.begin());
    if (m_running) {
        m_runTime = running->storedRunTime();
        m_snoozed = running->snoozedMinutes();
    }
    m_stored = stored ? stored->storedCopy() : nullptr;
}

std::optional<QString> LastDeletion::title() const {
    const AlarmPtr& deleted = m_running ? m_running : m_stored;
    return deleted ? std::optional(deleted->title()) : std::nullopt;
}

LastDeletion::Result LastDeletion::undo() {
    const bool isStored = !m_stored || storeAgain();
    const bool runs = !m_running || putBack();
    m_running = m_stored = nullptr;
    if (!runs)
        return Result::HasPassed;
    return isStored ? Result::Back : Result::TitleTaken;
}

// What has had its day would ring at once.
bool LastDeletion::putBack() {
    const QDateTime now = m_runLoop.now();
    m_running->setRunTime(m_runTime);
    m_running->setSnoozedMinutes(m_snoozed);
    if (m_running->due(instantOf(now)) && !moveOnPast(*m_running, now))
        return false;
    const QDateTime runTime = m_running->storedRunTime();
    const quint64 snoozed = m_running->snoozedMinutes();
    m_clock.insertAlarmAtIndex(m_running, std::min(m_index, int(m_clock.allAlarms().size())));
    m_running->setRunTime(runTime);
    m_running->setSnoozedMinutes(snoozed);
    m_clock.alarmDidChange();
    return true;
}

bool LastDeletion::storeAgain() {
    const auto stored = m_storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    if (alarmTitles(stored).contains(m_stored->title()) ||
        !m_storedAlarms.hasRoomFor(m_stored->title()))
        return false;
    m_storedAlarms.put(*m_stored, instantOf(m_runLoop.now()));
    return true;
}

QString problemText(LastDeletion::Result result) {
    switch (result) {
    case LastDeletion::Result::Back:
        break;
    case LastDeletion::Result::HasPassed:
        return QStringLiteral("its moment has passed");
    case LastDeletion::Result::TitleTaken:
        return QStringLiteral("another alarm is stored under its title by now, or the library is "
                              "full");
    }
    return {};
}

} // namespace dorvane

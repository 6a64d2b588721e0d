// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LastRun.h"

#include "platform/Log.h"
#include "platform/Workspace.h"

namespace dorvane {

using namespace std::chrono_literals;

LastRun::LastRun(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {
    m_surroundings.journal.setMissedChanged([this] { tell(); });
    m_surroundings.activeAlarms.restored().setCorrected(
        [this](const auto& changes) { m_surroundings.journal.correct(changes); });
}

void LastRun::restore(AlarmDelegate& delegate) {
    ActiveAlarms& alarms = m_surroundings.activeAlarms;
    alarms.restoreActiveAlarms(delegate, m_surroundings.journal.read());
    m_surroundings.journal.open({.areResumed = alarms.areResumed(),
                                 .hadStored = alarms.hadStored(),
                                 .decisions = alarms.restored().decisions(),
                                 .storedMarks = alarms.marks(),
                                 .announced = m_surroundings.announced()});
    m_look = m_surroundings.runLoop.scheduleOnce(
        1s, [this] { look(); }, RunLoopMode::Default);
}

void LastRun::end(bool isStored, Journal::Ends ends) {
    m_surroundings.journal.close(m_surroundings.activeAlarms.marks(), isStored, ends);
}

void LastRun::look() {
    if (const auto report = m_surroundings.takeCrashReport()) {
        m_crash = *report;
        qCWarning(logApp).noquote() << "the last run crashed; the report is in" << m_crash;
        m_surroundings.journal.noteCrash(m_crash);
    }
    m_hasLooked = true;
    tell();
}

void LastRun::tell() {
    if (!m_hasLooked)
        return;
    const auto& missed = m_surroundings.journal.missed();
    if (!m_window) {
        if (missed.empty() && m_crash.isEmpty())
            return;
        m_surroundings.prepareWindow();
        m_window = std::make_unique<MissedAlarmsWindow>(
            m_surroundings.runLoop, [this](const auto& again) { answered(again); });
        m_window->setOpenLink(
            [this](const QString& path) { m_surroundings.workspace.reveal(path); });
    }
    m_window->tell(missed, m_crash);
}

void LastRun::answered(const std::vector<MissedAlarm>& again) {
    for (const MissedAlarm& missed : again)
        startAgain(missed, m_surroundings.runLoop.now(), m_surroundings.schedule);
    m_crash.clear();
    m_surroundings.journal.answered();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LastRun.h"

#include "platform/Log.h"
#include "platform/Workspace.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

LastRun::LastRun(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {
    m_surroundings.journal.setMissedChanged([this] { tell(); });
    m_surroundings.activeAlarms.setCorrected(
        [this](const auto& changes) { m_surroundings.journal.correct(changes); });
    m_surroundings.journal.setCame([this](const auto& left) {
        m_hasJournalCome = true;
        m_late = left;
        goOnPausing();
        if (left)
            m_surroundings.activeAlarms.expect(*left);
        lookAtPreferences();
    });
}

void LastRun::restore(AlarmDelegate& delegate) {
    ActiveAlarms& alarms = m_surroundings.activeAlarms;
    const auto left = m_surroundings.journal.read();
    goOnPausing();
    open(alarms.restoreActiveAlarms(delegate, left));
    m_look = m_surroundings.runLoop.scheduleOnce(
        1s, [this] { look(); }, RunLoopMode::Default);
    if (!alarms.hadStored() || !m_surroundings.journal.hadFile())
        lookAgainLater();
}

// What somebody has paused by now holds.
void LastRun::goOnPausing() {
    const std::optional<Instant> until = m_surroundings.journal.pausedUntil();
    if (!until)
        return; // nor does a journal that comes late know of the end of one
    m_surroundings.activeAlarms.setPausedUntil(until);
    if (!m_surroundings.pause.until())
        m_surroundings.pause.pauseUntil(until);
}

void LastRun::open(const ActiveAlarms::Decisions& decisions) {
    const ActiveAlarms& alarms = m_surroundings.activeAlarms;
    m_surroundings.journal.open({.areResumed = alarms.areResumed(),
                                 .hadStored = alarms.hadStored(),
                                 .decisions = decisions,
                                 .storedMarks = alarms.marks(),
                                 .announced = m_surroundings.announced()});
}

void LastRun::lookAgainLater() {
    constexpr int mostLooks = 10; // the last after 17 minutes
    if (m_looks == mostLooks)
        return;
    m_lookAgain = m_surroundings.runLoop.scheduleOnce(
        1s * (1 << m_looks++),
        [this] {
            lookAgainLater();
            m_surroundings.journal.lookAgain([this] { lookAtPreferences(); });
        },
        RunLoopMode::Common);
}

void LastRun::lookAtPreferences() {
    m_surroundings.lookAtPreferences([this] { restoreLate(); });
}

void LastRun::restoreLate() {
    const bool hasJournalCome = std::exchange(m_hasJournalCome, false);
    const auto decisions = m_surroundings.activeAlarms.restoreLate(std::exchange(m_late, {}));
    if (decisions || hasJournalCome)
        open(decisions.value_or(ActiveAlarms::Decisions()));
    if (hasJournalCome)
        m_surroundings.activeAlarms.putBackPaused();
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

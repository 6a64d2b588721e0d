// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCycle.h"

#include "breaks/PendixTakeABreakSettings.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

BreakCycle::BreakCycle(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_sounds(m_surroundings.runLoop, m_surroundings.player) {}

void BreakCycle::startBreakTimer(int minutes) {
    if (m_takeABreakTimer)
        m_letGo.push_back(std::move(m_takeABreakTimer));
    m_takeABreakTimer = m_surroundings.runLoop.scheduleRepeating(
        std::chrono::minutes(minutes), [this] { takeABreakUpdate(); }, RunLoopMode::Default);
}

void BreakCycle::stopBreakTimer() {
    m_takeABreakTimer.cancel();
}

void BreakCycle::takeABreakUpdate() {
    stopBreakTimer();
    m_surroundings.settings.loadPrefs();
    if (const QString& path = m_surroundings.settings.soundPath(); !path.isEmpty())
        m_sounds.playFaded(path);
    if (m_sheet && m_sheet->isVisible())
        m_sheet->end(SheetCode::Replaced);
    m_sheet = m_surroundings.makeSheet();
    m_sheet->setCompletion([this](SheetCode code) { sheetEnded(code); });
    manageTakeABreakAlertAppearance();
    if (m_sheet) // a break of no length is over by now
        m_sheet->begin();
}

// Once a second while a sheet is up. The flag outlives a sheet that was ended by hand, so the next
// one begins a second short: that is how the countdown has always gone.
void BreakCycle::manageTakeABreakAlertAppearance() {
    if (!m_sheet)
        return;
    if (m_bTakerABreakAlertDisplayed)
        ++m_counter;
    else
        m_counter = 0;
    m_bTakerABreakAlertDisplayed = true;

    m_surroundings.settings.loadPrefs();
    const qint64 remaining = qint64(m_surroundings.settings.takeABreakDuration()) * 60 - m_counter;
    if (remaining <= 0) { // below zero when the break was made shorter meanwhile
        breakIsOver();
        return;
    }
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    m_sheet->setShowBreakTime(QStringLiteral("%1 %2:%3 %4")
                                  .arg(tr("Take a break for"), twoDigits(remaining / 60),
                                       twoDigits(remaining % 60), tr("mins")));
    m_tick = m_surroundings.runLoop.scheduleOnce(
        1s, [this] { manageTakeABreakAlertAppearance(); }, RunLoopMode::Default);
}

void BreakCycle::breakIsOver() {
    const std::shared_ptr<BreakSheet> sheet = m_sheet;
    sheet->setShowBreakTime(tr("Take a break for 00:00 mins"));
    m_bTakerABreakAlertDisplayed = false;
    m_counter = 0;
    ++m_repeatCounter;
    const bool wasLast = m_repeatCounter >= m_surroundings.settings.takeARepeatFrequency();
    sheet->setShowBreakTime(QString());
    if (wasLast) {
        m_repeatCounter = 0;
        m_isStop = true;
        sheet->clickStopBreak();
    } else {
        sheet->clickSkipBreak();
    }
}

void BreakCycle::sheetEnded(SheetCode code) {
    if (code == SheetCode::Done) {
        m_surroundings.settings.loadPrefs();
        if (const QString& path = m_surroundings.settings.durationSoundPath(); !path.isEmpty())
            m_sounds.playFaded(path);
        if (!m_isStop)
            startBreakTimer(m_surroundings.settings.takeABreakFrequency());
        m_counter = 0;
    } else if (code == SheetCode::Stopped) {
        m_isStop = true;
        m_repeatCounter = 0;
    }
    dropSheet();
}

// The sheet is on the way up the call stack.
void BreakCycle::dropSheet() {
    m_tick.cancel();
    m_surroundings.runLoop.defer([sheet = std::exchange(m_sheet, nullptr)] {});
}

void BreakCycle::enableRespito() {
    m_isStop = false;
    m_repeatCounter = 0;
}

void BreakCycle::disableRespito() {
    m_repeatCounter = 0;
    m_isStop = true;
    stopBreakTimer();
    if (m_sheet && m_sheet->isVisible())
        m_sheet->end(SheetCode::Replaced);
    m_surroundings.settings.setRespitoStatus(0);
    m_surroundings.settings.writePrefsAndSync();
}

} // namespace dorvane

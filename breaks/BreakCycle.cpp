// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCycle.h"

#include "breaks/PendixTakeABreakSettings.h"
#include "platform/Presence.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr RunLoop::Milliseconds nearTime = 30s;
constexpr RunLoop::Milliseconds putOffTime = 5min;
constexpr int mostTimesPutOff = 2;
// Whoever is called back to work later than that is at work.
constexpr RunLoop::Milliseconds latestCallToWork = 1min;

} // namespace

BreakCycle::BreakCycle(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_startSound(m_surroundings.runLoop, m_surroundings.player, m_surroundings.output, 24h)
    , m_stopSound(m_surroundings.runLoop, m_surroundings.player, m_surroundings.output,
                  latestCallToWork)
    , m_track(m_surroundings.runLoop, m_surroundings.player, m_surroundings.output)
    , m_absence(m_surroundings.runLoop, m_surroundings.presence, m_surroundings.notifications,
                [this](Milliseconds length) { returned(length); }) {
    m_clockSet = m_surroundings.runLoop.whenClockIsSet([this] {
        if (outlook().phase != BreakOutlook::Phase::Off)
            tellChange();
    });
}

// -- Work -----------------------------------------------------------------------------------------

void BreakCycle::startBreakTimer(int minutes) {
    m_surroundings.presence.watch();
    endSheet(SheetCode::Done);
    m_timesPutOff = 0;
    scheduleBreak(std::chrono::minutes(minutes));
}

void BreakCycle::scheduleBreak(Milliseconds time) {
    stopBreakTimer();
    m_due = m_surroundings.runLoop.uptime() + time;
    m_takeABreakTimer = m_surroundings.runLoop.scheduleOnce(
        time, [this] { breakIsDue(); }, RunLoopMode::Default);
    m_near = m_surroundings.runLoop.scheduleOnce(
        time - nearTime,
        [this] {
            m_isNear = true;
            tellChange();
        },
        RunLoopMode::Common);
    tellChange();
}

void BreakCycle::stopBreakTimer() {
    m_takeABreakTimer.cancel();
    m_near.cancel();
    m_isNear = false;
    m_waits = false;
}

void BreakCycle::breakIsDue() {
    stopBreakTimer();
    if (m_absence.isAway() && pausesWhileAway()) {
        m_waits = true;
        tellChange();
        return;
    }
    takeABreakUpdate();
}

bool BreakCycle::pausesWhileAway() {
    m_surroundings.settings.loadPrefs();
    return m_surroundings.settings.pausesWhileAway(m_surroundings.presence.isKnown());
}

// Rest that is taken while a sheet is up, that one counts.
void BreakCycle::returned(Milliseconds length) {
    const bool works = m_takeABreakTimer || m_waits;
    if (!works)
        return;
    const bool pauses = pausesWhileAway();
    const auto lasts = std::chrono::minutes(m_surroundings.settings.takeABreakDuration());
    if (pauses && length >= lasts)
        startBreakTimer(m_surroundings.settings.takeABreakFrequency());
    else if (m_waits)
        takeABreakUpdate();
    else
        tellChange(); // a sleep has moved the wall clock
}

// -- Rest -----------------------------------------------------------------------------------------

void BreakCycle::takeABreakUpdate() {
    stopBreakTimer();
    m_surroundings.settings.loadPrefs();
    playStartSound();
    endSheet(SheetCode::Replaced);
    m_sheet = m_surroundings.makeSheet();
    m_sheet->setCompletion([this](SheetCode code) { sheetEnded(code); });
    m_sheet->setCanBePutOff(m_timesPutOff < mostTimesPutOff);
    // The flag outlives a sheet that was ended by hand, so the next one begins a second short: that
    // is how the countdown has always gone.
    const auto ahead = std::chrono::seconds(m_bTakerABreakAlertDisplayed ? m_counter + 1 : 0);
    m_bTakerABreakAlertDisplayed = true;
    m_began = m_surroundings.runLoop.sinceBoot() - ahead;
    manageTakeABreakAlertAppearance();
    if (m_sheet) // a break of no length is over by now
        m_sheet->begin();
}

QString BreakCycle::fileOf(const QString& sound) const {
    return sound == builtInTrack ? m_surroundings.track : sound;
}

void BreakCycle::playStartSound() {
    const QString& sound = m_surroundings.settings.soundPath();
    if (sound == builtInTrack)
        m_track.play(m_surroundings.track);
    else
        m_startSound.play(sound);
}

// Once a second while a sheet is up, also while our menu is open. What has passed is read from the
// clock: a tick that comes late, after a sleep for one, makes no break longer.
void BreakCycle::manageTakeABreakAlertAppearance() {
    if (!m_sheet)
        return;
    const Milliseconds passed = m_surroundings.runLoop.sinceBoot() - m_began;
    m_counter = qint32(std::chrono::floor<std::chrono::seconds>(passed).count());
    m_surroundings.settings.loadPrefs();
    const Milliseconds total = std::chrono::minutes(m_surroundings.settings.takeABreakDuration());
    const bool isChanged = total != std::exchange(m_total, total);
    const qint64 remaining = std::chrono::floor<std::chrono::seconds>(total).count() - m_counter;
    if (remaining <= 0) { // below zero when the break was made shorter meanwhile
        breakIsOver();
        return;
    }
    showTime(remaining);
    m_track.setTimeLeft(total - passed);
    m_tick = m_surroundings.runLoop.scheduleOnce(
        std::chrono::seconds(m_counter + 1) - passed, [this] { manageTakeABreakAlertAppearance(); },
        RunLoopMode::Common);
    if (isChanged)
        tellChange();
}

void BreakCycle::showTime(qint64 seconds) {
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    m_sheet->setShowBreakTime(QStringLiteral("%1 %2:%3 %4")
                                  .arg(tr("Take a break for"), twoDigits(seconds / 60),
                                       twoDigits(seconds % 60), tr("mins")));
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

void BreakCycle::endSheet(SheetCode code) {
    if (m_sheet && m_sheet->isVisible())
        m_sheet->end(code);
}

void BreakCycle::sheetEnded(SheetCode code) {
    dropSheet();
    m_startSound.stop();
    m_track.stop();
    if (code == SheetCode::Done) {
        m_counter = 0;
        m_surroundings.settings.loadPrefs();
        m_stopSound.play(fileOf(m_surroundings.settings.durationSoundPath()));
        if (!m_isStop)
            startBreakTimer(m_surroundings.settings.takeABreakFrequency());
    } else if (code == SheetCode::PutOff) {
        m_bTakerABreakAlertDisplayed = false;
        ++m_timesPutOff;
        scheduleBreak(putOffTime);
    } else if (code == SheetCode::Stopped) {
        m_isStop = true;
        m_repeatCounter = 0;
    }
    tellChange();
}

// The sheet is on the way up the call stack.
void BreakCycle::dropSheet() {
    m_tick.cancel();
    m_total = 0ms;
    m_surroundings.runLoop.defer([sheet = std::exchange(m_sheet, nullptr)] {});
}

// -- On and off -----------------------------------------------------------------------------------

void BreakCycle::enableRespito() {
    m_isStop = false;
    m_repeatCounter = 0;
    m_counter = 0;
    m_bTakerABreakAlertDisplayed = false;
}

void BreakCycle::disableRespito() {
    m_repeatCounter = 0;
    m_isStop = true;
    stopBreakTimer();
    endSheet(SheetCode::Replaced);
    m_stopSound.stop();
    m_surroundings.settings.setRespitoStatus(0);
    m_surroundings.settings.writePrefsAndSync();
    tellChange();
}

// -- What is told ---------------------------------------------------------------------------------

BreakOutlook BreakCycle::outlook() const {
    using Phase = BreakOutlook::Phase;
    if (m_sheet)
        return {Phase::Resting, m_moment, false};
    if (m_waits)
        return {Phase::Waiting, {}, false};
    if (m_takeABreakTimer)
        return {Phase::Working, m_moment, m_isNear};
    return {};
}

void BreakCycle::tellChange() {
    const RunLoop& runLoop = m_surroundings.runLoop;
    const Milliseconds left =
        m_sheet ? m_began + m_total - runLoop.sinceBoot() : m_due - runLoop.uptime();
    m_moment = runLoop.now().addMSecs(left.count());
    m_surroundings.notifications.post(breaksDidChangeNotification, this);
}

} // namespace dorvane

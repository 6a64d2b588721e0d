// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/ClockBreaks.h"

#include "breaks/BreakReadOut.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "platform/UserDefaults.h"

#include <QLocale>

namespace dorvane {

using namespace std::chrono_literals;

ClockBreaks::ClockBreaks(RunLoop& runLoop, PendixTakeABreakSettings& settings,
                         UserDefaults& defaults, SoundPlayer& player)
    : m_runLoop(runLoop), m_settings(settings), m_defaults(defaults), m_sound(runLoop, player) {}

void ClockBreaks::startBreakTimer(int minutes) {
    m_takeABreakTimer = m_runLoop.scheduleRepeating(
        std::chrono::minutes(minutes) + 3s, [this] { takeABreakUpdate(); }, RunLoopMode::Default);
}

void ClockBreaks::stopBreakTimer() {
    m_breakMinutes = 0;
    m_takeABreakTimer.cancel();
}

void ClockBreaks::takeABreakUpdate() {
    stopBreakTimer();
    stopNextBreakTimer();
    m_isSkipped = false;
    m_settings.loadPrefs();
    if (!m_settings.showRespito() || !m_respito)
        return;
    if (!m_settings.soundPath().isEmpty() && m_respito->isBreakEveryEnabled())
        replaceSound(m_settings.soundPath());
    m_respito->showWindow();
    manageTakeABreakAlertAppearance();
}

void ClockBreaks::manageTakeABreakAlertAppearance() {
    if (m_isSkipped || !m_respito)
        return;
    m_breakMinutes = m_isCountdownStarted ? m_breakMinutes + 1 : 0;
    m_isCountdownStarted = true;
    m_settings.loadPrefs();
    if (!m_settings.enableTakeABreak())
        return;
    if (m_settings.takeABreakDuration() != m_breakMinutes)
        m_minuteTick = m_runLoop.scheduleOnce(
            60s, [this] { manageTakeABreakAlertAppearance(); }, RunLoopMode::Default);
    else
        breakIsOver();
}

void ClockBreaks::breakIsOver() {
    m_isCountdownStarted = false;
    m_breakMinutes = 0;
    if (!m_settings.durationSoundPath().isEmpty() && m_respito->isBreakDurationEnabled())
        replaceSound(m_settings.durationSoundPath());
    stopFlashTimer();
    ++m_repeatCounter;
    if (m_repeatCounter >= m_settings.takeARepeatFrequency()) {
        m_defaults.removeValue(nextDateKey);
        resetRepeatCounter();
        m_respito->stopRespito();
        m_respito->setNextBreakTimeLabel(tr("Stopped"));
        m_respito->setNextBreakTime(QString());
        return;
    }
    startNextBreakTimer();
    startBreakTimer(m_settings.takeABreakFrequency());
}

void ClockBreaks::startNextBreakTimer() {
    m_settings.loadPrefs();
    const qint32 minutes = m_settings.takeABreakFrequency();
    if (m_respito)
        m_respito->setNextBreakTimeLabel(tr("Next break at: "));
    showNextBreakTime(clockTimeIn(minutes), minutes, minutes < 2 ? tr("minute.") : tr("minutes."));
    m_respitoNextBreakTime = m_runLoop.scheduleRepeating(
        60s, [this] { updateNextBreakTime(); }, RunLoopMode::Default);
}

void ClockBreaks::stopNextBreakTimer() {
    m_minutesElapsed = 1;
    m_respitoNextBreakTime.cancel();
}

void ClockBreaks::updateNextBreakTime() {
    m_settings.loadPrefs();
    const qint32 left = m_settings.takeABreakFrequency() - m_minutesElapsed;
    if (left != 0) {
        showNextBreakTime(clockTimeIn(left), left, tr("minutes.")); // also when it is one
        ++m_minutesElapsed;
        return;
    }
    showNextBreakTime(clockTimeIn(0), 0, tr("minute."));
    stopNextBreakTimer();
    m_defaults.setValue(nextDateKey,
                        m_runLoop.now().addSecs(qint64(m_settings.takeABreakDuration()) * 60));
    flashBreakTimes();
}

QString ClockBreaks::clockTimeIn(qint32 minutes) const {
    return QLocale::c().toString(m_runLoop.now().addSecs(qint64(minutes) * 60),
                                 QStringLiteral("h:mm AP"));
}

void ClockBreaks::showNextBreakTime(const QString& time, qint32 minutes, const QString& unit) {
    if (m_respito)
        m_respito->setNextBreakTime(
            QStringLiteral("%1 %2 %3 %4").arg(time, tr("in"), QString::number(minutes), unit));
}

void ClockBreaks::flashBreakTimes() {
    if (m_respito)
        m_respito->fadeNextBreakTime(0.0);
    m_flashStart = m_runLoop.scheduleOnce(
        2s, [this] { startFlashBreakTimer(); }, RunLoopMode::Default);
}

void ClockBreaks::startFlashBreakTimer() {
    m_flashTimer = m_runLoop.scheduleRepeating(
        1s, [this] { flashBreakDurationTime(); }, RunLoopMode::Default);
    m_flashCount = 10;
}

void ClockBreaks::stopFlashTimer() {
    m_flashTimer.cancel();
    m_flashCount = 0;
}

void ClockBreaks::flashBreakDurationTime() {
    if (m_respito)
        m_respito->setNextBreakTimeLabel(tr("Break now for:"));
    const QDateTime nextDate = m_defaults.value(nextDateKey).toDateTime();
    if (!nextDate.isValid()) {
        stopFlashTimer();
        return;
    }
    const auto seconds =
        static_cast<qint64>(static_cast<double>(m_runLoop.now().msecsTo(nextDate)) / 1000 + 3.0);
    if (!m_respito)
        return;
    m_respito->setNextBreakTime(QStringLiteral("%1 %2 %3 %4")
                                    .arg(QString::number(seconds / 60), tr("mins and "),
                                         QString::number(seconds % 60), tr("seconds")));
    if (m_flashCount >= 0) {
        --m_flashCount;
        m_respito->fadeNextBreakTime(0.2);
    }
}

void ClockBreaks::skippBreak() {
    m_isSkipped = true;
}

void ClockBreaks::stopPlayingSound() {
    m_sound.stop();
}

void ClockBreaks::resetRepeatCounter() {
    m_repeatCounter = 0;
}

void ClockBreaks::replaceSound(const QString& path) {
    m_sound.stop();
    m_sound.play(path);
}

} // namespace dorvane

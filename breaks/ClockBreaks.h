// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakSounds.h"
#include "platform/RunLoop.h"

#include <QCoreApplication>

namespace dorvane {

class BreakReadOut;
class PendixTakeABreakSettings;
class UserDefaults;

// When the running break ends, a date in the preferences.
inline const QString nextDateKey = QStringLiteral("NextDate");

// Breaks counted in minutes and shown in the break preferences window, without a sheet: what the
// clock keeps of the break reminder. BreakCycle is the one that calls for breaks; of this one the
// window uses the operations that stop, skip and reset. Main thread only.
class ClockBreaks {
    Q_DECLARE_TR_FUNCTIONS(Breaks)

public:
    // Everything must outlive this.
    ClockBreaks(RunLoop& runLoop, PendixTakeABreakSettings& settings, UserDefaults& defaults,
                SoundPlayer& player);

    // The window; null for none. Not owned.
    [[nodiscard]] BreakReadOut* respito() const { return m_respito; }
    void setRespito(BreakReadOut* respito) { m_respito = respito; }

    void startBreakTimer(int minutes);
    void stopBreakTimer();
    // A break begins now.
    void takeABreakUpdate();
    // A minute of a break has passed.
    void manageTakeABreakAlertAppearance();

    // Shows when the next break begins, and keeps that up to date.
    void startNextBreakTimer();
    void stopNextBreakTimer();
    void updateNextBreakTime();

    // Draws the eye to the read-out, then counts down there until the date under nextDateKey.
    void flashBreakTimes();
    void startFlashBreakTimer();
    void stopFlashTimer();
    void flashBreakDurationTime();

    // What is pending of a break comes to nothing.
    void skippBreak();
    void stopPlayingSound();
    void resetRepeatCounter();

private:
    [[nodiscard]] QString clockTimeIn(qint32 minutes) const;
    void showNextBreakTime(const QString& time, qint32 minutes, const QString& unit);
    void replaceSound(const QString& path);
    void breakIsOver();

    RunLoop& m_runLoop;
    PendixTakeABreakSettings& m_settings;
    UserDefaults& m_defaults;
    BreakReadOut* m_respito = nullptr;
    BreakSounds m_sound;
    RunLoopTimer m_takeABreakTimer;
    RunLoopTimer m_minuteTick;
    RunLoopTimer m_respitoNextBreakTime;
    RunLoopTimer m_flashStart;
    RunLoopTimer m_flashTimer;
    qint32 m_breakMinutes = 0; // of the running break
    bool m_isCountdownStarted = false;
    bool m_isSkipped = false;
    qint32 m_repeatCounter = 0;
    qint32 m_minutesElapsed = 1; // since the last break was announced
    qint32 m_flashCount = 0;     // flashes left
};

} // namespace dorvane

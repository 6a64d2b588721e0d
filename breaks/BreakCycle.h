// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/Absence.h"
#include "breaks/BreakCall.h"
#include "breaks/BreakOutlook.h"
#include "breaks/BreakSheet.h"
#include "breaks/BreakTrack.h"
#include "platform/RunLoop.h"

#include <QCoreApplication>

#include <functional>
#include <memory>

namespace dorvane {

class PendixTakeABreakSettings;
class Presence;

// The break reminder's cycle: work, then a sheet that counts a break down, then work again, until
// it is stopped or has had its number of breaks. Work is counted in uptime, since a machine that
// sleeps does not work, and rest in all time that passes; setting the wall clock changes neither.
// Whoever has been away for as long as a break lasts has had one. Main thread only.
class BreakCycle {
    Q_DECLARE_TR_FUNCTIONS(Breaks)

public:
    struct Surroundings {
        RunLoop& runLoop;
        PendixTakeABreakSettings& settings;
        SoundPlayer& player;
        SoundOutput& output;
        NotificationCenter& notifications;
        Presence& presence;
        // The file of the track that comes with the program.
        QString track;
        // Makes a sheet, not shown yet.
        std::function<std::shared_ptr<BreakSheet>()> makeSheet;
    };

    // What is passed must outlive the cycle. Idle until startBreakTimer().
    explicit BreakCycle(Surroundings surroundings);

    // The working time begins anew: a break is due after so many minutes, and none before. A sheet
    // that is up ends as with its Done button.
    void startBreakTimer(int minutes);
    // Nothing is due any more.
    void stopBreakTimer();

    // A break begins now; a sheet that is still up is replaced.
    void takeABreakUpdate();

    // Lets the breaks count from the first; with enableRespito() a break that ends is followed by
    // the next, after disableRespito() it is not.
    void enableRespito();
    // Switches the reminder off: timer, sheet, sounds and status.
    void disableRespito();

    [[nodiscard]] BreakOutlook outlook() const;

private:
    using Milliseconds = RunLoop::Milliseconds;

    void breakIsDue();
    void returned(Milliseconds length);
    [[nodiscard]] bool pausesWhileAway();
    void scheduleBreak(Milliseconds time);
    void manageTakeABreakAlertAppearance();
    void showTime(qint64 seconds);
    void breakIsOver();
    void sheetEnded(SheetCode code);
    void endSheet(SheetCode code);
    void dropSheet();
    void playStartSound();
    [[nodiscard]] QString fileOf(const QString& sound) const;
    void tellChange();

    Surroundings m_surroundings;
    BreakCall m_startSound;
    BreakCall m_stopSound;
    BreakTrack m_track;
    RunLoopTimer m_takeABreakTimer;
    RunLoopTimer m_near;
    RunLoopTimer m_tick;
    RunLoopTimer m_clockSet;
    Milliseconds m_due{0};   // uptime; while m_takeABreakTimer is set
    Milliseconds m_began{0}; // sinceBoot() at which the countdown stood at its beginning
    Milliseconds m_total{0}; // of this break
    QDateTime m_moment;      // see BreakOutlook
    bool m_isNear = false;
    bool m_waits = false; // for somebody to come back
    bool m_isStop = true;
    qint32 m_counter = 0;       // seconds of this break
    qint32 m_repeatCounter = 0; // breaks that were sat out
    int m_timesPutOff = 0;      // the break that is due next
    bool m_bTakerABreakAlertDisplayed = false;
    std::shared_ptr<BreakSheet> m_sheet;
    Absence m_absence;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakSheet.h"
#include "breaks/BreakSounds.h"
#include "platform/RunLoop.h"

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

class PendixTakeABreakSettings;

// The break reminder's cycle: work, then a sheet that counts a break down, then work again, until
// it is stopped or has had its number of breaks. Everything is counted in uptime: a machine that
// sleeps neither works nor rests, and setting the wall clock changes nothing. Main thread only.
class BreakCycle {
    Q_DECLARE_TR_FUNCTIONS(Breaks)

public:
    struct Surroundings {
        RunLoop& runLoop;
        PendixTakeABreakSettings& settings;
        SoundPlayer& player;
        // Makes a sheet, not shown yet.
        std::function<std::shared_ptr<BreakSheet>()> makeSheet;
    };

    // What is passed must outlive the cycle. Idle until startBreakTimer().
    explicit BreakCycle(Surroundings surroundings);

    // Calls for a break after so many minutes, and again after each so many more until
    // stopBreakTimer(). A timer that is set already is let go, not stopped: it goes on calling.
    void startBreakTimer(int minutes);
    // Stops the timer that was set last.
    void stopBreakTimer();

    // A break begins now; a sheet that is still up is replaced.
    void takeABreakUpdate();

    // Lets the breaks count from the first; with enableRespito() a break that ends is followed by
    // the next, after disableRespito() it is not.
    void enableRespito();
    // Switches the reminder off: timer, sheet and status.
    void disableRespito();

private:
    void manageTakeABreakAlertAppearance();
    void breakIsOver();
    void sheetEnded(SheetCode code);
    void dropSheet();

    Surroundings m_surroundings;
    BreakSounds m_sounds;
    RunLoopTimer m_takeABreakTimer;
    std::vector<RunLoopTimer> m_letGo;
    RunLoopTimer m_tick;
    bool m_isStop = true;
    qint32 m_counter = 0;       // seconds of this break
    qint32 m_repeatCounter = 0; // breaks that were sat out
    bool m_bTakerABreakAlertDisplayed = false;
    std::shared_ptr<BreakSheet> m_sheet;
};

} // namespace dorvane

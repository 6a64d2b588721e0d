// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ArchivedList.h"
#include "core/RestoredAlarms.h"

namespace dorvane {

class AlarmDelegate;
class Clock;

// The running alarms across a restart: written when the program quits, put back into the clock when
// it starts. Main thread only.
class ActiveAlarms {
public:
    ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                 Clock& clock);

    void storeActiveAlarms();

    // Puts the alarms of the last orderly quit back and makes `delegate` theirs. Past alarms are
    // dropped, but for weekday alarms, which move on to their next day. What is stored stays. Once.
    void restoreActiveAlarms(AlarmDelegate& delegate);

    // False when nothing was ever stored, or it is lost.
    [[nodiscard]] bool hadStored() const { return m_hadStored; }
    // What became of the stored alarms.
    [[nodiscard]] RestoredAlarms& restored() { return m_restored; }

private:
    // Read at the start, and written at the end: nothing of it is worth remembering between.
    [[nodiscard]] ArchivedList list() const;

    UserDefaults& m_defaults;
    const AlarmArchive& m_archive;
    Clock& m_clock;
    RestoredAlarms m_restored;
    bool m_hadStored = false;
};

} // namespace dorvane

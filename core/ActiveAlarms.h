// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ArchivedList.h"

namespace dorvane {

class AlarmDelegate;
class Clock;

// The running alarms across a restart: written when the program quits, put back into the clock when
// it starts. Main thread only.
class ActiveAlarms {
public:
    ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, const RunLoop& runLoop,
                 Clock& clock);

    void storeActiveAlarms();

    // Puts the alarms of the last orderly quit back and makes `delegate` theirs. Past alarms are
    // dropped, but for weekday alarms, which move on to their next day. What is stored stays.
    void restoreActiveAlarms(AlarmDelegate& delegate);

private:
    ArchivedList m_list;
    const RunLoop& m_runLoop;
    Clock& m_clock;
};

} // namespace dorvane

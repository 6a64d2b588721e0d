// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RunningAlarm.h"
#include "platform/RunLoop.h"

#include <optional>

namespace dorvane {

class Clock;
class StoredAlarms;

// What was deleted last, running or stored, for whoever did not mean it. It lasts until something
// else is deleted, or the program ends. Main thread only.
class LastDeletion {
public:
    // All of it must outlive the object.
    LastDeletion(const RunLoop& runLoop, Clock& clock, StoredAlarms& storedAlarms);

    // To be called before the one is taken from the clock and the other from the library; either
    // may be null.
    void remember(const AlarmPtr& running, const AlarmPtr& stored);

    // Of what undo() would bring back; nothing when there is nothing.
    [[nodiscard]] std::optional<QString> title() const;

    enum class Result { Back, HasPassed, TitleTaken };
    // Brings it back as it was: a timer counts from when it was started, what repeats goes on. What
    // has had its day meanwhile is not brought back to the clock, and what was stored under a title
    // that is taken again not to the library. There must be something.
    [[nodiscard]] Result undo();

private:
    [[nodiscard]] bool putBack();
    [[nodiscard]] bool storeAgain();

    const RunLoop& m_runLoop;
    Clock& m_clock;
    StoredAlarms& m_storedAlarms;
    AlarmPtr m_running;
    QDateTime m_runTime; // which the clock begins afresh, with its snoozes
    quint64 m_snoozed = 0;
    int m_index = 0; // in the clock's list
    AlarmPtr m_stored;
};

// Why it is not all back, for a person to read; empty when it is.
[[nodiscard]] QString problemText(LastDeletion::Result result);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RingEvent.h"
#include "journal/JournalContents.h"
#include "journal/JournalFormat.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <functional>

namespace dorvane {

class Clock;
class StateFile;

// The program's memory of what it was doing, for the start after an end that nobody wanted: which
// alarms run, what rang, what went unanswered. Written at most once a second, and only when
// something changed; never read again while the program runs. Main thread only.
class Journal {
public:
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        const Clock& clock;
        const PropertyListFormat& format;
        StateFile& file;
    };

    // All of the surroundings must outlive the journal, which watches the clock from now on and
    // writes nothing before open().
    explicit Journal(Surroundings surroundings);

    // What became of the stored alarms at this start.
    struct Restored {
        bool hadStored = true; // false: no list was stored, or it is lost
        std::vector<AlarmPtr> dropped;
    };

    // Reads what earlier runs left, and tells what is missing now: after an orderly quit the alarms
    // that were dropped at this start, else those that were running at the end. Once, when the
    // clock has its alarms back. A journal of which something cannot be read is put aside.
    void open(const Restored& restored);

    void note(RingEvent event, const AlarmPtr& alarm);
    void noteCrash(const QString& report);

    // What the user has not been told yet, or has not answered.
    [[nodiscard]] const std::vector<MissedAlarm>& missed() const { return m_contents.missed; }
    // Called when missed() became another, but for answered().
    void setMissedChanged(std::function<void()> changed) { m_missedChanged = std::move(changed); }
    // The user has decided on everything that was missed.
    void answered();

    // The clock was wrong at the start: these alarms have been put back after all, those have been
    // dropped after all.
    void correct(const std::vector<AlarmPtr>& putBack, const std::vector<AlarmPtr>& dropped);

    // At an orderly quit, which may yet be called off: whatever happens then says so. Waits for the
    // disk. Opens the journal when that has not been done.
    void close(const Restored& restored);

    // The quit was called off.
    void goOn() { changed(); }

    // How long an event is kept, and how many at most.
    static constexpr std::chrono::days memory{30};
    static constexpr std::size_t mostEvents = 2000;

private:
    void miss(const std::vector<RunningAlarm>& missing, MissedAlarm::Reason reason);
    void unmiss(const Alarm& alarm);
    [[nodiscard]] Instant now() const;
    void add(JournalEvent::What what, Instant due, const QString& text);
    void forgetOld();
    void changed();
    void write(bool isOrderly);

    Surroundings m_surroundings;
    JournalFormat m_format;
    JournalContents m_contents;
    const RunLoop::Milliseconds m_start; // of uptime, as m_nextWrite
    bool m_isOpen = false;
    bool m_mayWrite = true;               // false: what is there could not be put aside
    RunLoop::Milliseconds m_nextWrite{0}; // not before
    RunLoopTimer m_writeTimer;
    std::function<void()> m_missedChanged;
    NotificationCenter::Observation m_alarmsDidChange;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RunningAlarm.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <QLocale>

#include <optional>

namespace dorvane {

class Clock;

// The end of a pause that lasts until somebody ends it.
inline constexpr Instant untilResumed = Instant::max();

// Whether a pause holds the alarm: one that comes again for good, every day, every week or each
// time that so much has passed. Timers, dated alarms and those for single days ring.
[[nodiscard]] bool comesAgain(const Alarm& alarm);

// A running alarm as another run wrote it down, with what a pause until then held gone by in
// silence: the same where nothing was held, nothing while it never rings. The record given stays.
[[nodiscard]] std::optional<RunningAlarm> afterPause(const RunningAlarm& running,
                                                     const std::optional<Instant>& until);

// Has the record itself go on, as far as the pause has come by now.
void passPause(RunningAlarm& running, const std::optional<Instant>& until, Instant now);

// "paused until 1 Dec", "paused"; empty for no pause.
[[nodiscard]] QString pauseText(const std::optional<Instant>& until, const QDateTime& now,
                                const QLocale& territory = QLocale::system());

// Holds back the alarms that come again, until a moment or until somebody ends it: what they were
// due for meanwhile goes by in silence, as if it had rung and been cleared each time. Whoever
// writes down what runs has to write down until() too. Main thread only.
class AlarmPause {
public:
    // All of it must outlive the pause, which is to be made before others watch the clock.
    AlarmPause(RunLoop& runLoop, NotificationCenter& notifications, Clock& clock);
    ~AlarmPause();
    AlarmPause(const AlarmPause&) = delete;
    AlarmPause& operator=(const AlarmPause&) = delete;

    // A pause, or another end of it; nothing, or a moment that has passed, ends it. What is due
    // from that moment on rings. The clock tells of the change.
    void pauseUntil(const std::optional<Instant>& until);

    // The end of the pause; nothing while there is none.
    [[nodiscard]] std::optional<Instant> until() const;
    // The same, for the next run: a clock that is set back later brings it back.
    [[nodiscard]] const std::optional<Instant>& written() const { return m_until; }

private:
    void update();
    void hold();
    void release();

    RunLoop& m_runLoop;
    Clock& m_clock;
    std::optional<Instant> m_until;
    RunLoopTimer m_end;
    RunLoopTimer m_clockSet;
    NotificationCenter::Observation m_alarmsObservation;
};

} // namespace dorvane

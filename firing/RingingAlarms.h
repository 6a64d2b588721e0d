// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "firing/SnoozeWindowController.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/SoundOutput.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

class SleepInhibitor;

// The alarms that ring and wait for an answer. While there are any, the machine does not fall
// asleep; and their windows say in a line what keeps them from being heard. One that was not heard
// because the server or the output had gone is to sound again when they are back, and the line
// stays until it did. Main thread only.
class RingingAlarms {
public:
    // In place of a sound that breaks off whatever the output does, another one is to be heard.
    enum class Again { Own, StandIn };
    using SoundAgain = std::function<void(const AlarmPtr& alarm, Again which)>;
    using Ended = std::function<void(bool isHeard)>;

    // All must outlive it. `soundAgain` is called for each alarm that was not heard.
    RingingAlarms(RunLoop& runLoop, SoundOutput& output, SleepInhibitor& inhibitor,
                  SoundAgain soundAgain);
    ~RingingAlarms();
    RingingAlarms(const RingingAlarms&) = delete;
    RingingAlarms& operator=(const RingingAlarms&) = delete;

    // An alarm that is to be heard has its window tell of the output too.
    void add(const AlarmPtr& alarm, const std::shared_ptr<SnoozeWindowController>& window);

    // Answered, or unanswered for long enough. An alarm that does not ring is ignored.
    void remove(const AlarmPtr& alarm);

    [[nodiscard]] bool isEmpty() const { return m_ringing.empty(); }

    // The alarm's sound begins. What is answered is to be called at its end, with whether it was
    // heard whole; of a sound that another took the place of meanwhile it does nothing.
    [[nodiscard]] Ended soundBegins(const AlarmPtr& alarm);

    // The alarm's sound gave way to another, or to an answer: that it ends is no fault.
    void soundGivesWay(const AlarmPtr& alarm);

    // What is wrong with the alarm's own sound. Gives way to what keeps every sound from being
    // heard.
    void setFault(const AlarmPtr& alarm, const SnoozeWindowController::Note& fault);

private:
    struct Ringing {
        AlarmPtr alarm;
        std::weak_ptr<SnoozeWindowController> window;
        SnoozeWindowController::Note fault;
        std::uint64_t sound = 0; // its number; none when zero
        bool isLost = false;     // that sound cannot have been heard whole
        bool isWaiting = false;  // to sound again
        int brokenOff = 0;       // sounds in a row, though the output was well
        QString unheard;         // why, until it was heard
    };

    [[nodiscard]] Ringing* find(const AlarmPtr& alarm);
    void soundEnded(std::uint64_t sound, bool isHeard);
    void soundWaitingAgain();
    void show(const Ringing& ringing) const;
    void outputChanged(const SoundOutputState& state);

    RunLoop& m_runLoop;
    SoundOutput& m_output;
    SleepInhibitor& m_inhibitor;
    std::vector<Ringing> m_ringing;
    const SoundAgain m_soundAgain;
    QString m_outputFault; // empty while sounds are heard
    bool m_isOutputLost = false;
    std::uint64_t m_sounds = 0;
    RunLoopTimer m_retry;
    std::unique_ptr<SoundOutput::Watch> m_watch;
    Lifeline<RingingAlarms> m_lifeline{*this};
};

} // namespace dorvane

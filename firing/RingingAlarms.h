// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "firing/SnoozeWindowController.h"
#include "platform/SoundOutput.h"

#include <memory>
#include <vector>

namespace dorvane {

class SleepInhibitor;

// The alarms that ring and wait for an answer. While there are any, the machine does not fall
// asleep; and their windows say in a line what keeps them from being heard. Main thread only.
class RingingAlarms {
public:
    // Both must outlive it.
    RingingAlarms(SoundOutput& output, SleepInhibitor& inhibitor);
    ~RingingAlarms();
    RingingAlarms(const RingingAlarms&) = delete;
    RingingAlarms& operator=(const RingingAlarms&) = delete;

    // An alarm that is to be heard has its window tell of the output too.
    void add(const AlarmPtr& alarm, const std::shared_ptr<SnoozeWindowController>& window);

    // Answered, or unanswered for long enough. An alarm that does not ring is ignored.
    void remove(const AlarmPtr& alarm);

    // What is wrong with the alarm's own sound. Gives way to what keeps every sound from being
    // heard.
    void setFault(const AlarmPtr& alarm, const SnoozeWindowController::Note& fault);

private:
    struct Ringing {
        AlarmPtr alarm;
        std::weak_ptr<SnoozeWindowController> window;
        SnoozeWindowController::Note fault;
    };

    void show(const Ringing& ringing) const;
    void outputChanged(const SoundOutputState& state);

    SoundOutput& m_output;
    SleepInhibitor& m_inhibitor;
    std::vector<Ringing> m_ringing;
    QString m_outputFault; // empty while sounds are heard
    std::unique_ptr<SoundOutput::Watch> m_watch;
};

} // namespace dorvane

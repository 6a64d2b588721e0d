// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AudioError.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"

#include <QString>

#include <functional>
#include <optional>

namespace dorvane {

class AudioRecorder;
class Bundle;
struct ReminderControls;

// The recording half of the window that records reminders: ten seconds at most, while which its
// level and its time are shown and nothing else of the window can be used. What goes wrong is told
// in the window. Belongs to the window, whose controls it has; destroyed, it leaves the recording
// to its recorder. Main thread only.
class ReminderRecording {
public:
    // What a recording is for, from when it was asked for.
    struct Take {
        QString path;
        QString toReclaim; // the recording that goes when this one is made
    };
    struct Callbacks {
        std::function<void()> idle;                  // recording has ended, in whichever way
        std::function<void(const Take& take)> added; // after that, when there is a file
    };

    // All must outlive this.
    ReminderRecording(RunLoop& runLoop, AudioRecorder& recorder, const Bundle& bundle,
                      const ReminderControls& controls, Callbacks callbacks);

    [[nodiscard]] bool isRunning() const { return static_cast<bool>(m_timer); }

    void begin(const Take& take);
    // Without a recording that runs, these do nothing.
    void stop(); // and keeps it: `added` follows
    void cancel();

    // The controls as they are while nothing is recorded.
    void exitRecording();
    void updateRecordButton();

private:
    void prepareForRecording();
    void showSaving();
    void setEndsEnabled(bool enabled);
    void timerTick();
    void showProgress(RunLoop::Milliseconds elapsed);
    void finished(const Take& take, const std::optional<AudioError>& error);

    RunLoop& m_runLoop;
    AudioRecorder& m_recorder;
    const Bundle& m_bundle;
    const ReminderControls& m_controls;
    const Callbacks m_callbacks;
    RunLoopTimer m_timer; // set while recording
    RunLoop::Milliseconds m_since{0};
    bool m_isSaving = false;
    Lifeline<ReminderRecording> m_lifeline{*this};
};

} // namespace dorvane

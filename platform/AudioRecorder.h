// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AudioError.h"

#include <functional>
#include <optional>

namespace dorvane {

// Records the default microphone to AIFF files, one at a time. Nothing here waits: the recording
// itself happens on other threads. Main thread only.
class AudioRecorder {
public:
    // An error when there is no file, or it holds less than was to be recorded. What nobody could
    // hear is no recording: it leaves the older file as it is.
    using Finished = std::function<void(const std::optional<AudioError>& error)>;

    virtual ~AudioRecorder() = default;

    // Starts a recording that replaces the file at `path` when it is complete. `finished` is
    // called once, never from inside a member of this class: after stop(), or when the recording
    // came to an end by itself. False when a recording is running already.
    [[nodiscard]] virtual bool record(const QString& path, Finished finished) = 0;

    // From record() until `finished` or cancel().
    [[nodiscard]] virtual bool isRecording() const = 0;

    // Ends the recording and keeps it; `finished` follows.
    virtual void stop() = 0;

    // Ends the recording and leaves no file, unless stop() has been called: that is not taken back.
    // `finished` is not called.
    virtual void cancel() = 0;

    // The loudest sample since the last call, 0.0 to 1.0.
    [[nodiscard]] virtual float takeLevel() = 0;
};

} // namespace dorvane

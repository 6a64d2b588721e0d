// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SoundRecorder.h"

#include <atomic>
#include <functional>
#include <memory>

namespace dorvane {

enum class RecordingFormat {
    Aiff, // 16 bits, the rate and channels of the microphone
    Aac,  // in MPEG-4, 11025 Hz, stereo
};

// What goes on during a recording, for whoever shows it. Both may be used on any thread.
struct RecordingMonitor {
    // The loudest sample since this was last set to zero.
    std::atomic<float> level{0.0F};
    // Called on the writing thread when the recording cannot go on; stop() is still to be called.
    std::function<void()> failed;
};

// What the loadable module gives: the way from the microphone to a file. Any thread.
class RecordingModule {
public:
    virtual ~RecordingModule() = default;

    [[nodiscard]] virtual std::unique_ptr<SoundRecorder>
    recorder(RecordingFormat format, const QString& path,
             std::shared_ptr<RecordingMonitor> monitor) const = 0;
};

// The module's one entry point, a function of this type and name. The caller owns the result.
using RecordingModuleEntry = RecordingModule* (*)();
inline constexpr const char* recordingModuleEntryName = "dorvaneRecordingModule";

} // namespace dorvane

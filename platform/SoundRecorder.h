// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AudioError.h"

#include <optional>

namespace dorvane {

// Writes what the default microphone hears to a file. The file appears under its name when it is
// complete; until then a file of the same name with ".part" behind it grows. Every member waits
// for the sound server or the disk, for seconds at worst, so none belongs on the main thread; one
// thread at a time.
class SoundRecorder {
public:
    using Error = std::optional<AudioError>;

    // A recording that stop() did not complete leaves no file.
    virtual ~SoundRecorder() = default;

    // Gets everything ready, so that start() has nothing left to do but start.
    [[nodiscard]] virtual Error prepare() = 0;
    [[nodiscard]] virtual Error start() = 0;

    // Ends the recording and completes the file. Answers what went wrong since start() too; there
    // is no file then unless the error says so, and none of a recording in which nothing is heard.
    [[nodiscard]] virtual Error stop() = 0;

    [[nodiscard]] virtual const QString& file() const = 0;
};

} // namespace dorvane

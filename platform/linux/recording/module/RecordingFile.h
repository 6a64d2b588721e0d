// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstddef>

namespace dorvane {

// A sound file being written, by one thread at a time. Every step answers zero or a negative code
// of the system or the encoder. Destroying it closes the file as it is.
class RecordingFile {
public:
    virtual ~RecordingFile() = default;

    [[nodiscard]] virtual int create(const QString& path) = 0;
    // Tells what will be written: interleaved floats. Makes everything that writing needs.
    [[nodiscard]] virtual int setFormat(int rate, int channels) = 0;
    [[nodiscard]] virtual int writeHeader() = 0;
    [[nodiscard]] virtual int write(const float* samples, std::size_t frames) = 0;
    // Completes the file; all of it has been handed to the system then.
    [[nodiscard]] virtual int close() = 0;

    [[nodiscard]] virtual QString reason(int code) const = 0;
};

} // namespace dorvane

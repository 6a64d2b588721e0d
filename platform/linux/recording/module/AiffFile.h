// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/recording/module/RecordingFile.h"

using SNDFILE = struct sf_private_tag;

namespace dorvane {

// AIFF with 16 bits a sample, at the rate and with the channels that it is given. Codes are the
// system's, negative.
class AiffFile final : public RecordingFile {
public:
    AiffFile() = default;
    ~AiffFile() override;
    AiffFile(const AiffFile&) = delete;
    AiffFile& operator=(const AiffFile&) = delete;

    [[nodiscard]] int create(const QString& path) override;
    [[nodiscard]] int setFormat(int rate, int channels) override;
    [[nodiscard]] int writeHeader() override;
    [[nodiscard]] int write(const float* samples, std::size_t frames) override;
    [[nodiscard]] int close() override;
    [[nodiscard]] QString reason(int code) const override;

private:
    int m_descriptor = -1;
    SNDFILE* m_file = nullptr;
};

} // namespace dorvane

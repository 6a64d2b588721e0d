// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/recording/module/RecordingFile.h"

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct AVStream;
struct SwrContext;

namespace dorvane {

// AAC in MPEG-4 at 11025 Hz, stereo, whatever it is given: one channel goes to both sides as it is.
// Codes are FFmpeg's.
class AacFile final : public RecordingFile {
public:
    AacFile() = default;
    ~AacFile() override;
    AacFile(const AacFile&) = delete;
    AacFile& operator=(const AacFile&) = delete;

    [[nodiscard]] int create(const QString& path) override;
    [[nodiscard]] int setFormat(int rate, int channels) override;
    [[nodiscard]] int writeHeader() override;
    [[nodiscard]] int write(const float* samples, std::size_t frames) override;
    [[nodiscard]] int close() override;
    [[nodiscard]] QString reason(int code) const override;

private:
    [[nodiscard]] int openEncoder();
    [[nodiscard]] int openResampler(int rate, int channels);
    [[nodiscard]] int convert(const float* samples, int frames);
    [[nodiscard]] int encodeFrame();
    [[nodiscard]] int writePackets();

    AVFormatContext* m_container = nullptr;
    AVStream* m_stream = nullptr;
    AVCodecContext* m_codec = nullptr;
    SwrContext* m_resampler = nullptr;
    AVPacket* m_packet = nullptr;
    AVFrame* m_frame = nullptr; // filled up, encoded, and filled again
    int m_filled = 0;
};

} // namespace dorvane

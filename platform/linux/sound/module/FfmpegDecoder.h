// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/module/AvioInput.h"
#include "platform/linux/sound/SoundModule.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

extern "C" {
#include <libavutil/channel_layout.h>
}

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct AVStream;
struct SwrContext;

namespace dorvane {

// Decodes the best audio stream of a file. Damaged parts are left out, a
// file that was cut off ends early.
class FfmpegDecoder final : public SoundDecoder {
public:
    // Stands at the beginning. Null with the reason in `error` when the file is of no type that can
    // be played, not one sample of it can be decoded, or it is of a form that no sound has: what a
    // file says of itself decides how much memory its samples take.
    [[nodiscard]] static std::shared_ptr<FfmpegDecoder>
    open(std::shared_ptr<const SoundInput> file, SoundModule::Cancelled cancelled, QString& error);

    ~FfmpegDecoder() override;
    FfmpegDecoder(const FfmpegDecoder&) = delete;
    FfmpegDecoder& operator=(const FfmpegDecoder&) = delete;

    [[nodiscard]] Sound::Seconds start() const override { return m_start; }
    [[nodiscard]] std::size_t read(float* out, std::size_t frames) override;

    // Goes to a position, which may mean to decode what lies before it, and decodes the first
    // second, so that read() has nothing to wait for at first. Once, before anything else; not
    // cancelled any longer after that.
    void makeReady(Sound::Seconds at);

    // What the container says; zero when it does not, unreliable when it had to guess.
    [[nodiscard]] Sound::Seconds statedDuration() const;
    [[nodiscard]] bool durationIsGuessed() const;

    // These use the decoder up. Whether nothing can be heard up to there; decodes no more than that
    // takes to find out.
    [[nodiscard]] bool isSilentFor(Sound::Seconds time);
    // The whole length, also after isSilentFor(): decoding everything that is left; or from the
    // packets, which is some twenty times faster and a frame or two off.
    [[nodiscard]] Sound::Seconds countSamples();
    [[nodiscard]] Sound::Seconds countPackets();

    // Whether the installed FFmpeg has them.
    [[nodiscard]] static bool supports(const char* demuxer, const char* decoder);

private:
    FfmpegDecoder(std::shared_ptr<const SoundInput> file, SoundModule::Cancelled cancelled);

    [[nodiscard]] bool openContainer(QString& error);
    [[nodiscard]] bool openCodec(QString& error);
    void seek(Sound::Seconds at);
    [[nodiscard]] bool nextPacket();
    [[nodiscard]] bool nextFrame();
    void convertFrame();
    void endConversion();
    void convert(const AVFrame* frame);
    [[nodiscard]] bool frameIsBounded() const;
    [[nodiscard]] bool frameFitsResampler() const;
    [[nodiscard]] bool setUpResampler();
    [[nodiscard]] bool endsWhereStated() const;

    AvioInput m_input;
    AVFormatContext* m_container = nullptr;
    AVStream* m_stream = nullptr;
    AVCodecContext* m_codec = nullptr;
    AVPacket* m_packet = nullptr;
    AVFrame* m_frame = nullptr;
    SwrContext* m_resampler = nullptr;
    // What the resampler was made for. A frame that is like the one before goes the same way:
    // a resampler that begins anew is heard.
    struct {
        int rate = 0;
        int format = -1;
        AVChannelLayout layout{};
    } m_resampled;
    bool m_frameWaits = false; // m_frame was decoded and not converted yet
    bool m_inputEnded = false;
    bool m_ended = false;

    std::int64_t m_firstTimestamp = 0; // what the file calls the beginning of the sound
    Sound::Seconds m_start{0};
    bool m_seeking = false;   // the next frame tells where the file was entered
    std::size_t m_toDrop = 0; // samples
    std::size_t m_toGive = std::numeric_limits<std::size_t>::max(); // samples up to the end
    Sound::Seconds m_decoded{0};                                    // what went into the resampler,
    std::size_t m_made = 0;                                         // and the samples that came out
    std::vector<float> m_converted;
    std::size_t m_convertedUsed = 0; // samples of m_converted already given away
};

} // namespace dorvane

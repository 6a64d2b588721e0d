// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/FfmpegDecoder.h"
#include "platform/linux/sound/module/PulseOutput.h"
#include "platform/linux/sound/module/ReadAhead.h"

extern "C" {
#include <libavutil/log.h>
}

namespace dorvane {

namespace {

// A sound up to this length is decoded whole to learn its exact length, and a silent one to this.
constexpr Sound::Seconds countedLength(60);

class FfmpegPulseModule final : public SoundModule {
public:
    FfmpegPulseModule() {
        // What matters of a damaged file is said by the caller, once and with its name.
        av_log_set_level(AV_LOG_QUIET);
    }

    [[nodiscard]] std::shared_ptr<SoundDecoder> decoder(std::shared_ptr<const SoundInput> file,
                                                        Sound::Seconds at,
                                                        const Cancelled& cancelled,
                                                        QString& error) const override {
        const bool isHeld = file->isHeld();
        auto decoder = FfmpegDecoder::open(std::move(file), cancelled, error);
        if (!decoder)
            return nullptr;
        decoder->makeReady(at);
        if (isHeld)
            return decoder;
        return std::make_shared<ReadAhead>(std::move(decoder));
    }

    [[nodiscard]] Extent measure(std::shared_ptr<const SoundInput> file,
                                 const Cancelled& cancelled) const override {
        QString error;
        const auto decoder = FfmpegDecoder::open(std::move(file), cancelled, error);
        if (!decoder)
            return {};
        const bool isSilent = decoder->isSilentFor(countedLength);
        const Sound::Seconds stated = decoder->statedDuration();
        if (stated <= countedLength)
            return {decoder->countSamples(), isSilent};
        return {decoder->durationIsGuessed() ? decoder->countPackets() : stated, isSilent};
    }

    [[nodiscard]] std::unique_ptr<SoundVoice> play(std::shared_ptr<SoundDecoder> decoder,
                                                   SoundVoiceStart start) override {
        return m_output.play(std::move(decoder), std::move(start));
    }

    [[nodiscard]] std::unique_ptr<SoundWatch>
    watch(std::function<void(const SoundOutputState&)> changed) override {
        return m_output.watch(std::move(changed));
    }

    [[nodiscard]] std::unique_ptr<SoundWatch>
    listen(std::function<void(const float*, std::size_t)> heard) override {
        return m_output.listen(std::move(heard));
    }

    [[nodiscard]] bool supports(const char* demuxer, const char* decoder) const override {
        return FfmpegDecoder::supports(demuxer, decoder);
    }

private:
    PulseOutput m_output;
};

} // namespace

} // namespace dorvane

extern "C" Q_DECL_EXPORT dorvane::SoundModule* dorvaneSoundModule() {
    return new dorvane::FfmpegPulseModule;
}

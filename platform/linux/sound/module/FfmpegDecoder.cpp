// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/FfmpegDecoder.h"

#include "platform/linux/sound/SoundTypes.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace dorvane {

namespace {

// Frames of compressed audio lean on the ones before them, so a seek enters a little earlier.
constexpr double seekPreroll = 0.15;

// How much is decoded ahead of a play.
constexpr Sound::Seconds readyTime(1);

// What a change of the rate adds to a tone stays 120 dB below it; FFmpeg's own choice, 94 dB at
// 8 kHz, could be told from the original. Costs less than one per cent of a processor.
constexpr std::int64_t filterTaps = 64;
constexpr std::int64_t filterSteepness = 12; // of its Kaiser window

// What sounds have. Beyond that a small file could ask for all the memory that there is: what it
// calls a second becomes 48000 frames.
constexpr int lowestRate = 1000;
constexpr int highestRate = 768'000;
constexpr int mostChannels = 32;
constexpr int longestFrame = 10; // seconds

// 60 dB below the loudest: less than the noise of any room.
constexpr float silence = 0.001F;

QString reason(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return QString::fromUtf8(text.data());
}

// Only the containers that are meant to be played: some of FFmpeg's others are play lists that
// would have it open further files.
QByteArray allowedDemuxers() {
    QByteArray names;
    for (const SoundType& type : soundTypes)
        names += QByteArray(type.demuxer) + ',';
    names.chop(1);
    return names;
}

// Samples of our output; none in a negative time.
std::size_t samplesIn(Sound::Seconds time) {
    return static_cast<std::size_t>(std::max(0LL, std::llround(time.count() * soundRate))) *
           soundChannels;
}

double secondsOf(AVRational unit) {
    return av_q2d(unit);
}

} // namespace

FfmpegDecoder::FfmpegDecoder(std::shared_ptr<const SoundInput> file,
                             SoundModule::Cancelled cancelled)
    : m_input(std::move(file), std::move(cancelled)) {}

FfmpegDecoder::~FfmpegDecoder() {
    swr_free(&m_resampler);
    av_channel_layout_uninit(&m_resampled.layout);
    av_frame_free(&m_frame);
    av_packet_free(&m_packet);
    avcodec_free_context(&m_codec);
    avformat_close_input(&m_container);
}

std::shared_ptr<FfmpegDecoder> FfmpegDecoder::open(std::shared_ptr<const SoundInput> file,
                                                   SoundModule::Cancelled cancelled,
                                                   QString& error) {
    std::shared_ptr<FfmpegDecoder> decoder(
        new FfmpegDecoder(std::move(file), std::move(cancelled)));
    if (!decoder->openContainer(error) || !decoder->openCodec(error))
        return nullptr;
    if (!decoder->nextFrame()) {
        error = QStringLiteral("no sound in the file");
        return nullptr;
    }
    if (!decoder->frameIsBounded() || !decoder->setUpResampler()) {
        error = QStringLiteral("no sound has its rate, its channels or its frames");
        return nullptr;
    }
    if (decoder->m_frame->pts != AV_NOPTS_VALUE)
        decoder->m_firstTimestamp = decoder->m_frame->pts;
    return decoder;
}

void FfmpegDecoder::makeReady(Sound::Seconds at) {
    if (at > Sound::Seconds(0))
        seek(at);
    if (endsWhereStated())
        m_toGive = samplesIn(statedDuration() - at);
    while (!m_ended && !m_input.isCancelled() && m_converted.size() < samplesIn(readyTime))
        convertFrame();
    m_input.keepReading();
}

bool FfmpegDecoder::openContainer(QString& error) {
    m_container = avformat_alloc_context();
    m_packet = av_packet_alloc();
    m_frame = av_frame_alloc();
    m_container->pb = m_input.context();
    m_container->format_whitelist = av_strdup(allowedDemuxers().constData());

    int code = avformat_open_input(&m_container, nullptr, nullptr, nullptr);
    if (code >= 0)
        code = avformat_find_stream_info(m_container, nullptr);
    if (code < 0)
        error = reason(code);
    return code >= 0;
}

bool FfmpegDecoder::openCodec(QString& error) {
    const AVCodec* codec = nullptr;
    int code = av_find_best_stream(m_container, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (code >= 0) {
        m_stream = m_container->streams[code];
        for (unsigned i = 0; i < m_container->nb_streams; ++i)
            m_container->streams[i]->discard = AVDISCARD_ALL;
        m_stream->discard = AVDISCARD_DEFAULT;
        m_codec = avcodec_alloc_context3(codec);
        code = avcodec_parameters_to_context(m_codec, m_stream->codecpar);
    }
    if (code >= 0) {
        m_codec->pkt_timebase = m_stream->time_base;
        code = avcodec_open2(m_codec, codec, nullptr);
    }
    if (code < 0)
        error = reason(code);
    return code >= 0;
}

// Enters the file before `at`; what lies in between is decoded and dropped. Where the file cannot
// be entered there, everything from its beginning is dropped instead.
void FfmpegDecoder::seek(Sound::Seconds at) {
    m_start = at;
    m_seeking = true;
    const double entry = at.count() - seekPreroll;
    if (entry <= 0)
        return;
    const auto timestamp = m_firstTimestamp + std::llround(entry / secondsOf(m_stream->time_base));
    if (av_seek_frame(m_container, m_stream->index, timestamp, AVSEEK_FLAG_BACKWARD) < 0)
        return;
    avcodec_flush_buffers(m_codec);
    av_frame_unref(m_frame);
    m_frameWaits = false;
    m_inputEnded = false;
}

std::size_t FfmpegDecoder::read(float* out, std::size_t frames) {
    const std::size_t wanted = std::min(frames * soundChannels, m_toGive);
    std::size_t got = 0;
    while (got < wanted) {
        if (m_convertedUsed == m_converted.size()) {
            if (m_ended)
                break;
            convertFrame();
            continue;
        }
        const std::size_t count = std::min(wanted - got, m_converted.size() - m_convertedUsed);
        std::memcpy(out + got, m_converted.data() + m_convertedUsed, count * sizeof(float));
        m_convertedUsed += count;
        got += count;
    }
    m_toGive -= got;
    return got / soundChannels;
}

Sound::Seconds FfmpegDecoder::statedDuration() const {
    if (m_stream->duration != AV_NOPTS_VALUE)
        return Sound::Seconds(static_cast<double>(m_stream->duration) *
                              secondsOf(m_stream->time_base));
    if (m_container->duration != AV_NOPTS_VALUE)
        return Sound::Seconds(static_cast<double>(m_container->duration) / AV_TIME_BASE);
    return Sound::Seconds(0);
}

bool FfmpegDecoder::durationIsGuessed() const {
    return m_container->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
}

// MPEG-4 says where in its last frame the sound ends, which FFmpeg leaves to the player.
bool FfmpegDecoder::endsWhereStated() const {
    return std::strncmp(m_container->iformat->name, "mov", 3) == 0 &&
           statedDuration() > Sound::Seconds(0);
}

bool FfmpegDecoder::isSilentFor(Sound::Seconds time) {
    while (!m_ended && !m_input.isCancelled() && m_decoded < time) {
        convertFrame();
        for (; m_convertedUsed < m_converted.size(); ++m_convertedUsed)
            if (std::abs(m_converted[m_convertedUsed]) >= silence)
                return false;
    }
    return !m_input.isCancelled();
}

Sound::Seconds FfmpegDecoder::countSamples() {
    Sound::Seconds total = m_decoded;
    while (!m_input.isCancelled() && nextFrame()) {
        if (m_frame->sample_rate > 0)
            total +=
                Sound::Seconds(static_cast<double>(m_frame->nb_samples) / m_frame->sample_rate);
        m_frameWaits = false;
    }
    return endsWhereStated() ? std::min(total, statedDuration()) : total;
}

Sound::Seconds FfmpegDecoder::countPackets() {
    Sound::Seconds total = m_decoded;
    if (m_frameWaits)
        total += Sound::Seconds(static_cast<double>(m_frame->nb_samples) / m_frame->sample_rate);
    while (!m_input.isCancelled() && nextPacket()) {
        total += Sound::Seconds(static_cast<double>(m_packet->duration) *
                                secondsOf(m_stream->time_base));
        av_packet_unref(m_packet);
    }
    return total;
}

bool FfmpegDecoder::supports(const char* demuxer, const char* decoder) {
    return av_find_input_format(demuxer) && avcodec_find_decoder_by_name(decoder);
}

bool FfmpegDecoder::nextPacket() {
    while (av_read_frame(m_container, m_packet) >= 0) {
        if (m_packet->stream_index == m_stream->index)
            return true;
        av_packet_unref(m_packet);
    }
    return false;
}

// Leaves the next decoded frame in m_frame. False at the end.
bool FfmpegDecoder::nextFrame() {
    while (!m_frameWaits) {
        const int code = avcodec_receive_frame(m_codec, m_frame);
        if (code >= 0) {
            m_frameWaits = true;
        } else if (code == AVERROR_EOF || m_inputEnded) {
            return false;
        } else if (nextPacket()) {
            // A packet that cannot be decoded is left out.
            (void)avcodec_send_packet(m_codec, m_packet);
            av_packet_unref(m_packet);
        } else {
            // What the decoder holds back still follows.
            (void)avcodec_send_packet(m_codec, nullptr);
            m_inputEnded = true;
        }
    }
    return true;
}

// Appends the next piece to m_converted, or sets m_ended. What has been given away is forgotten.
void FfmpegDecoder::convertFrame() {
    if (m_convertedUsed == m_converted.size()) {
        m_converted.clear();
        m_convertedUsed = 0;
    }
    if (!nextFrame()) {
        endConversion();
    } else {
        const bool fits = frameFitsResampler();
        if (!fits)
            convert(nullptr);
        if (!frameIsBounded() || (!fits && !setUpResampler())) {
            m_ended = true;
            return;
        }
        if (m_seeking && m_frame->pts != AV_NOPTS_VALUE) {
            const Sound::Seconds position(static_cast<double>(m_frame->pts - m_firstTimestamp) *
                                          secondsOf(m_stream->time_base));
            m_toDrop = samplesIn(m_start - position);
        }
        m_seeking = false;
        convert(m_frame);
        m_decoded +=
            Sound::Seconds(static_cast<double>(m_frame->nb_samples) / m_frame->sample_rate);
        m_frameWaits = false;
    }
    // Nothing has been kept as long as something is to be dropped.
    const std::size_t dropped = std::min(m_toDrop, m_converted.size());
    m_convertedUsed += dropped;
    m_toDrop -= dropped;
}

// The resampler by itself may end a frame early or late.
void FfmpegDecoder::endConversion() {
    convert(nullptr);
    const std::size_t exact = samplesIn(m_decoded);
    const std::size_t surplus = m_made - std::min(m_made, exact);
    const std::size_t missing = exact - std::min(m_made, exact);
    m_converted.resize(m_converted.size() + missing -
                       std::min(surplus, m_converted.size() - m_convertedUsed));
    m_ended = true;
}

// Appends to m_converted; without a frame, what the resampler still holds.
void FfmpegDecoder::convert(const AVFrame* frame) {
    if (!m_resampler)
        return;
    const int samples = frame ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(m_resampler, samples);
    if (room <= 0)
        return;
    const std::size_t before = m_converted.size();
    m_converted.resize(before + static_cast<std::size_t>(room) * soundChannels);
    auto* out = reinterpret_cast<std::uint8_t*>(m_converted.data() + before);
    const auto** in = frame ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr;
    const int got = swr_convert(m_resampler, &out, room, in, samples);
    m_converted.resize(before + static_cast<std::size_t>(std::max(got, 0)) * soundChannels);
    m_made += m_converted.size() - before;
}

bool FfmpegDecoder::frameIsBounded() const {
    const int rate = m_frame->sample_rate;
    const int channels = m_frame->ch_layout.nb_channels;
    return rate >= lowestRate && rate <= highestRate && channels >= 1 && channels <= mostChannels &&
           m_frame->nb_samples <= rate * longestFrame;
}

bool FfmpegDecoder::frameFitsResampler() const {
    return m_resampler && m_resampled.rate == m_frame->sample_rate &&
           m_resampled.format == m_frame->format &&
           av_channel_layout_compare(&m_resampled.layout, &m_frame->ch_layout) == 0;
}

bool FfmpegDecoder::setUpResampler() {
    swr_free(&m_resampler);
    m_resampled.rate = m_frame->sample_rate;
    m_resampled.format = m_frame->format;
    av_channel_layout_copy(&m_resampled.layout, &m_frame->ch_layout);

    AVChannelLayout stereo{};
    av_channel_layout_default(&stereo, static_cast<int>(soundChannels));
    // Plain PCM does not say which channel is which.
    AVChannelLayout usual{};
    av_channel_layout_default(&usual, m_frame->ch_layout.nb_channels);
    const bool isTold = m_frame->ch_layout.order != AV_CHANNEL_ORDER_UNSPEC;
    const int code = swr_alloc_set_opts2(
        &m_resampler, &stereo, AV_SAMPLE_FMT_FLT, soundRate, isTold ? &m_frame->ch_layout : &usual,
        static_cast<AVSampleFormat>(m_frame->format), m_frame->sample_rate, 0, nullptr);
    av_channel_layout_uninit(&usual);
    if (code < 0)
        return false;
    av_opt_set_int(m_resampler, "filter_size", filterTaps, 0);
    av_opt_set_int(m_resampler, "kaiser_beta", filterSteepness, 0);
    // Surround sound is mixed without clipping; one channel goes to both sides undiminished.
    av_opt_set_double(m_resampler, "rematrix_maxval", 1.0, 0);
    constexpr std::array<double, soundChannels> bothSides{1.0, 1.0};
    if (m_frame->ch_layout.nb_channels == 1 && swr_set_matrix(m_resampler, bothSides.data(), 1) < 0)
        return false;
    return swr_init(m_resampler) >= 0;
}

} // namespace dorvane

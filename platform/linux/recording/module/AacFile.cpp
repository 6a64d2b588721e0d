// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/module/AacFile.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <array>

namespace dorvane {

namespace {

constexpr int fileRate = 11025;
constexpr int fileChannels = 2;
constexpr std::int64_t fileBitRate = 64'000;

} // namespace

AacFile::~AacFile() {
    av_frame_free(&m_frame);
    av_packet_free(&m_packet);
    swr_free(&m_resampler);
    avcodec_free_context(&m_codec);
    if (m_container)
        avio_closep(&m_container->pb);
    avformat_free_context(m_container);
}

int AacFile::create(const QString& path) {
    const int code = avformat_alloc_output_context2(&m_container, nullptr, "ipod", nullptr);
    if (code < 0)
        return code;
    // Otherwise a full disk would show only when the file is complete.
    m_container->flags |= AVFMT_FLAG_FLUSH_PACKETS;
    const QByteArray url = "file:" + QFile::encodeName(path);
    return avio_open(&m_container->pb, url.constData(), AVIO_FLAG_WRITE);
}

int AacFile::setFormat(int rate, int channels) {
    int code = openEncoder();
    if (code >= 0)
        code = openResampler(rate, channels);
    if (code < 0)
        return code;
    m_packet = av_packet_alloc();
    m_frame = av_frame_alloc();
    m_frame->format = m_codec->sample_fmt;
    m_frame->sample_rate = fileRate;
    m_frame->nb_samples = m_codec->frame_size;
    m_frame->pts = 0;
    code = av_channel_layout_copy(&m_frame->ch_layout, &m_codec->ch_layout);
    return code < 0 ? code : av_frame_get_buffer(m_frame, 0);
}

int AacFile::openEncoder() {
    const AVCodec* encoder = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (!encoder)
        return AVERROR_ENCODER_NOT_FOUND;
    m_codec = avcodec_alloc_context3(encoder);
    m_codec->sample_rate = fileRate;
    m_codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_codec->bit_rate = fileBitRate;
    m_codec->time_base = {1, fileRate};
    m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&m_codec->ch_layout, fileChannels);
    const int code = avcodec_open2(m_codec, encoder, nullptr);
    if (code < 0)
        return code;
    m_stream = avformat_new_stream(m_container, nullptr);
    m_stream->time_base = m_codec->time_base;
    return avcodec_parameters_from_context(m_stream->codecpar, m_codec);
}

int AacFile::openResampler(int rate, int channels) {
    AVChannelLayout input{};
    av_channel_layout_default(&input, channels);
    const int code = swr_alloc_set_opts2(&m_resampler, &m_codec->ch_layout, m_codec->sample_fmt,
                                         fileRate, &input, AV_SAMPLE_FMT_FLT, rate, 0, nullptr);
    if (code < 0)
        return code;
    constexpr std::array<double, fileChannels> bothSides{1.0, 1.0};
    if (channels == 1)
        swr_set_matrix(m_resampler, bothSides.data(), 1);
    return swr_init(m_resampler);
}

int AacFile::writeHeader() {
    const int code = avformat_write_header(m_container, nullptr);
    if (code < 0)
        return code;
    avio_flush(m_container->pb);
    return m_container->pb->error;
}

int AacFile::write(const float* samples, std::size_t frames) {
    return convert(samples, static_cast<int>(frames));
}

int AacFile::close() {
    // What the resampler holds, the frame that is not full, what the encoder holds.
    int code = convert(nullptr, 0);
    if (code >= 0 && m_filled > 0)
        code = encodeFrame();
    if (code >= 0)
        code = avcodec_send_frame(m_codec, nullptr);
    if (code >= 0)
        code = writePackets();
    if (code >= 0)
        code = av_write_trailer(m_container);
    const int closed = avio_closep(&m_container->pb);
    return code < 0 ? code : closed;
}

// Fills and encodes frames; without samples, with what the resampler still holds.
int AacFile::convert(const float* samples, int frames) {
    const auto* in = reinterpret_cast<const std::uint8_t*>(samples);
    for (;;) {
        std::array<std::uint8_t*, fileChannels> out{};
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = m_frame->extended_data[i] + static_cast<std::size_t>(m_filled) * sizeof(float);
        const int got = swr_convert(m_resampler, out.data(), m_codec->frame_size - m_filled,
                                    samples ? &in : nullptr, frames);
        if (got < 0)
            return got;
        m_filled += got;
        if (m_filled < m_codec->frame_size)
            return 0;
        if (const int code = encodeFrame(); code < 0)
            return code;
        frames = 0; // they are all in the resampler now
    }
}

int AacFile::encodeFrame() {
    m_frame->nb_samples = m_filled;
    if (const int code = avcodec_send_frame(m_codec, m_frame); code < 0)
        return code;
    m_frame->pts += m_filled;
    m_filled = 0;
    // The encoder may have kept the frame's memory.
    const int code = writePackets();
    return code < 0 ? code : av_frame_make_writable(m_frame);
}

int AacFile::writePackets() {
    for (;;) {
        int code = avcodec_receive_packet(m_codec, m_packet);
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF)
            return 0;
        if (code < 0)
            return code;
        av_packet_rescale_ts(m_packet, m_codec->time_base, m_stream->time_base);
        m_packet->stream_index = m_stream->index;
        code = av_interleaved_write_frame(m_container, m_packet);
        if (code >= 0)
            code = m_container->pb->error;
        if (code < 0)
            return code;
    }
}

QString AacFile::reason(int code) const {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return QString::fromUtf8(text.data());
}

} // namespace dorvane

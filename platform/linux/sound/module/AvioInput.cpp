// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/AvioInput.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include <utility>

namespace dorvane {

namespace {

constexpr int bufferSize = 32 * 1024;

} // namespace

AvioInput::AvioInput(std::shared_ptr<const SoundInput> file, SoundModule::Cancelled cancelled)
    : m_file(std::move(file))
    , m_cancelled(std::move(cancelled))
    , m_context(avio_alloc_context(static_cast<unsigned char*>(av_malloc(bufferSize)), bufferSize,
                                   0, this, read, nullptr, seek)) {}

AvioInput::~AvioInput() {
    // FFmpeg may have replaced the buffer that it was given.
    av_freep(&m_context->buffer);
    avio_context_free(&m_context);
}

int AvioInput::read(void* opaque, std::uint8_t* buffer, int size) {
    auto& self = *static_cast<AvioInput*>(opaque);
    if (self.m_cancelled())
        return AVERROR_EXIT;
    const std::int64_t count = self.m_file->read(self.m_position, buffer, size);
    if (count <= 0)
        return count < 0 ? AVERROR(EIO) : AVERROR_EOF;
    self.m_position += count;
    return static_cast<int>(count);
}

std::int64_t AvioInput::seek(void* opaque, std::int64_t offset, int whence) {
    auto& self = *static_cast<AvioInput*>(opaque);
    const std::int64_t size = self.m_file->size();
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return size;
    case SEEK_CUR:
        offset += self.m_position;
        break;
    case SEEK_END:
        offset += size;
        break;
    default:
        break;
    }
    if (offset < 0 || offset > size)
        return AVERROR(EINVAL);
    return self.m_position = offset;
}

} // namespace dorvane

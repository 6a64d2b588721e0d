// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/MemoryInput.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cstring>

namespace dorvane {

namespace {

constexpr int bufferSize = 32 * 1024;

} // namespace

MemoryInput::MemoryInput(const QByteArray& file)
    : m_file(file)
    , m_context(avio_alloc_context(static_cast<unsigned char*>(av_malloc(bufferSize)), bufferSize,
                                   0, this, read, nullptr, seek)) {}

MemoryInput::~MemoryInput() {
    // FFmpeg may have replaced the buffer that it was given.
    av_freep(&m_context->buffer);
    avio_context_free(&m_context);
}

int MemoryInput::read(void* opaque, std::uint8_t* buffer, int size) {
    auto& self = *static_cast<MemoryInput*>(opaque);
    const std::int64_t left = self.m_file.size() - self.m_position;
    const auto count = std::min<std::int64_t>(size, left);
    if (count <= 0)
        return AVERROR_EOF;
    std::memcpy(buffer, self.m_file.constData() + self.m_position, static_cast<std::size_t>(count));
    self.m_position += count;
    return static_cast<int>(count);
}

std::int64_t MemoryInput::seek(void* opaque, std::int64_t offset, int whence) {
    auto& self = *static_cast<MemoryInput*>(opaque);
    const std::int64_t size = self.m_file.size();
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

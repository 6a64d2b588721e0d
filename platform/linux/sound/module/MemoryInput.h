// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>

struct AVIOContext;

namespace dorvane {

// Lets FFmpeg read a file that is held in memory.
class MemoryInput {
public:
    explicit MemoryInput(const QByteArray& file);
    ~MemoryInput();
    MemoryInput(const MemoryInput&) = delete;
    MemoryInput& operator=(const MemoryInput&) = delete;

    // Valid as long as this object, which must not be moved.
    [[nodiscard]] AVIOContext* context() const { return m_context; }

private:
    static int read(void* opaque, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* opaque, std::int64_t offset, int whence);

    const QByteArray m_file;
    std::int64_t m_position = 0;
    AVIOContext* m_context;
};

} // namespace dorvane

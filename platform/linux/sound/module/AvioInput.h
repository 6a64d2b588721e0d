// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/SoundModule.h"

#include <cstdint>
#include <memory>

struct AVIOContext;

namespace dorvane {

// Lets FFmpeg read a sound's file.
class AvioInput {
public:
    // Reading fails as soon as `cancelled` says so; asked before each block.
    AvioInput(std::shared_ptr<const SoundInput> file, SoundModule::Cancelled cancelled);
    ~AvioInput();
    AvioInput(const AvioInput&) = delete;
    AvioInput& operator=(const AvioInput&) = delete;

    // Valid as long as this object, which must not be moved.
    [[nodiscard]] AVIOContext* context() const { return m_context; }

    [[nodiscard]] bool isCancelled() const { return m_cancelled(); }
    // From now on it reads to the end.
    void keepReading() {
        m_cancelled = [] { return false; };
    }

private:
    static int read(void* opaque, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* opaque, std::int64_t offset, int whence);

    const std::shared_ptr<const SoundInput> m_file;
    SoundModule::Cancelled m_cancelled;
    std::int64_t m_position = 0;
    AVIOContext* m_context;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/SoundModule.h"

#include <memory>

namespace dorvane {

// Decodes a sound on a thread of its own, some seconds ahead, so that whoever plays it never waits
// for its disk. Where the disk is too slow the sound pauses, and nothing else does. The thread
// begins with the first read() and is left to itself when this is destroyed: it ends as soon as its
// disk answers.
class ReadAhead final : public SoundDecoder {
public:
    // Takes what the source has ready at once.
    explicit ReadAhead(std::shared_ptr<SoundDecoder> source);
    ~ReadAhead() override;
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    [[nodiscard]] Sound::Seconds start() const override { return m_start; }
    // Fills up with silence what is not there in time.
    [[nodiscard]] std::size_t read(float* out, std::size_t frames) override;
    [[nodiscard]] bool isStarved() const override { return m_isStarved; }

private:
    struct Shared;

    const Sound::Seconds m_start;
    const std::shared_ptr<Shared> m_shared;
    bool m_isReading = false;
    std::size_t m_missing = 0; // frames, since something came
    bool m_isStarved = false;
};

} // namespace dorvane

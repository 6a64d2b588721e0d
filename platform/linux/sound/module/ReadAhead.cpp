// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/ReadAhead.h"

#include "platform/SampleRing.h"

#include <algorithm>
#include <atomic>
#include <semaphore>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace dorvane {

namespace {

constexpr std::size_t aheadSamples = 8 * soundRate * soundChannels; // eight seconds
constexpr std::size_t blockFrames = soundRate / 10;
constexpr std::size_t blockSamples = blockFrames * soundChannels;
// What a decoder has ready when it is new, by a good measure.
constexpr std::size_t readyFrames = soundRate / 2;

// A disk that does not answer by then may never do.
constexpr std::size_t longestMissing = 5 * soundRate; // frames

} // namespace

// The thread's, and what both use.
struct ReadAhead::Shared {
    explicit Shared(std::shared_ptr<SoundDecoder> source_) : source(std::move(source_)) {}

    // False at the end of the sound.
    [[nodiscard]] bool readBlock(std::size_t frames) {
        block.resize(frames * soundChannels);
        const std::size_t got = source->read(block.data(), frames);
        while (!ring.write(block.data(), got * soundChannels) && !isAbandoned)
            wanted.acquire();
        return got == frames;
    }

    // The reading thread's alone once that runs.
    std::shared_ptr<SoundDecoder> source;
    std::vector<float> block;

    SampleRing ring{aheadSamples};
    std::counting_semaphore<> wanted{0}; // something was read
    std::atomic<bool> isEnded{false};
    std::atomic<bool> isAbandoned{false};
};

ReadAhead::ReadAhead(std::shared_ptr<SoundDecoder> source)
    : m_start(source->start()), m_shared(std::make_shared<Shared>(std::move(source))) {
    m_shared->isEnded = !m_shared->readBlock(readyFrames);
}

ReadAhead::~ReadAhead() {
    m_shared->isAbandoned = true;
    m_shared->wanted.release();
}

std::size_t ReadAhead::read(float* out, std::size_t frames) {
    if (!std::exchange(m_isReading, true) && !m_shared->isEnded) {
        try {
            std::thread([shared = m_shared] {
                while (!shared->isAbandoned && shared->readBlock(blockFrames)) {
                }
                shared->isEnded = true;
            }).detach();
        } catch (const std::system_error&) { // no more threads are to be had
            m_isReading = false;
        }
    }
    const bool isAll = m_shared->isEnded; // before the ring is read: no more comes after that
    const std::size_t got = m_shared->ring.read(out, frames * soundChannels) / soundChannels;
    m_shared->wanted.release();
    if (got == frames || isAll) {
        m_missing = 0;
        return got;
    }
    m_missing = (got > 0 ? 0 : m_missing) + frames - got;
    m_isStarved = m_missing > longestMissing;
    if (m_isStarved)
        return got;
    std::fill(out + got * soundChannels, out + frames * soundChannels, 0.0F);
    return frames;
}

} // namespace dorvane

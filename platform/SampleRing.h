// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <vector>

namespace dorvane {

// Hands samples from one thread to another. Neither waits, and all memory is there from the start.
class SampleRing {
public:
    explicit SampleRing(std::size_t capacity) : m_samples(capacity) {}

    // The writing thread's end: takes all of them (silence, when `samples` is null) or, when there
    // is no room for all, none and answers false.
    [[nodiscard]] bool write(const float* samples, std::size_t count) {
        const std::size_t written = m_written.load(std::memory_order_relaxed);
        if (count > m_samples.size() - (written - m_read.load(std::memory_order_acquire)))
            return false;
        const std::size_t first = written % m_samples.size();
        const std::size_t untilEnd = std::min(count, m_samples.size() - first);
        put(samples, untilEnd, first);
        put(samples ? samples + untilEnd : nullptr, count - untilEnd, 0);
        m_written.store(written + count, std::memory_order_release);
        return true;
    }

    // The reading thread's end: gives up to `count` samples and answers how many.
    [[nodiscard]] std::size_t read(float* samples, std::size_t count) {
        const std::size_t alreadyRead = m_read.load(std::memory_order_relaxed);
        count = std::min(count, m_written.load(std::memory_order_acquire) - alreadyRead);
        const std::size_t first = alreadyRead % m_samples.size();
        const std::size_t untilEnd = std::min(count, m_samples.size() - first);
        std::copy_n(m_samples.data() + first, untilEnd, samples);
        std::copy_n(m_samples.data(), count - untilEnd, samples + untilEnd);
        m_read.store(alreadyRead + count, std::memory_order_release);
        return count;
    }

private:
    void put(const float* samples, std::size_t count, std::size_t at) {
        if (samples)
            std::copy_n(samples, count, m_samples.data() + at);
        else
            std::fill_n(m_samples.data() + at, count, 0.0F);
    }

    std::vector<float> m_samples;
    // Counted from the beginning, and never taken back.
    std::atomic<std::size_t> m_written{0};
    std::atomic<std::size_t> m_read{0};
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

struct pa_simple;

namespace dorvane::testing {

// Records what the default server's sink "out" plays, from construction on: the mean of both
// channels at 48 kHz. Moments are frames since the beginning, so that nothing depends on how busy
// the machine is.
class SinkCapture {
public:
    static constexpr double rate = 48000;

    SinkCapture();
    ~SinkCapture();
    SinkCapture(const SinkCapture&) = delete;
    SinkCapture& operator=(const SinkCapture&) = delete;

    [[nodiscard]] bool isRunning() const { return m_server != nullptr; }

    // Now, in seconds; behind the truth by some 5 ms.
    [[nodiscard]] double now() const;

    // A stretch of sound, in seconds.
    struct Burst {
        double begin = 0;
        double end = 0;
        [[nodiscard]] double length() const { return end - begin; }
    };

    // What was heard since `from`: stretches that are separated by at least `gap` of silence.
    [[nodiscard]] std::vector<Burst> bursts(double from, double gap = 0.01) const;

    // The amplitude of a sine of this loudness.
    [[nodiscard]] double level(double begin, double end) const;

    // The largest step between neighbouring samples: a click stands out.
    [[nodiscard]] double largestStep(double begin, double end) const;

private:
    void record();
    [[nodiscard]] std::vector<float> samples(double begin, double end) const;

    pa_simple* m_server;
    mutable std::mutex m_lock;
    std::vector<float> m_samples;
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

} // namespace dorvane::testing

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryFile>

#include <vector>

namespace dorvane::testing {

// Records what the default server's sink "out" plays, from construction on: the mean of both
// channels at 48 kHz. Moments are frames since the beginning, so that nothing depends on how busy
// the machine is.
class SinkCapture {
public:
    static constexpr double rate = 48000;

    SinkCapture();
    ~SinkCapture();

    // Whether anything is recorded yet; waits for it.
    [[nodiscard]] bool isRunning() const;

    // Now, in seconds; behind the truth by some 5 ms.
    [[nodiscard]] double now() const { return double(m_recording.size()) / sizeof(float) / rate; }

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
    [[nodiscard]] std::vector<float> samples(double begin, double end) const;

    QTemporaryFile m_recording;
    QProcess m_recorder;
};

} // namespace dorvane::testing

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SampleRing.h"

#include <QByteArray>

#include <atomic>
#include <functional>
#include <optional>
#include <pulse/pulseaudio.h>
#include <semaphore>

namespace dorvane {

// The default microphone, over a connection to the sound server of its own. The steps are called in
// the order in which they stand here, by one thread, and each answers a code of the sound server:
// zero, or why it failed. They wait for the server, but not for ever. The samples arrive on the
// capture thread, which does nothing but copy them into memory that was made beforehand.
class PulseCapture {
public:
    PulseCapture() = default;
    ~PulseCapture();
    PulseCapture(const PulseCapture&) = delete;
    PulseCapture& operator=(const PulseCapture&) = delete;

    [[nodiscard]] int connect();
    [[nodiscard]] int findDefaultSource();
    // The default source, or where that is no microphone, the best one that there is.
    [[nodiscard]] int readSource();
    [[nodiscard]] int makeStream();
    [[nodiscard]] int openStream();
    void makeBuffers();
    [[nodiscard]] int start();
    [[nodiscard]] int stop();

    // After readSource(): what is recorded, at most two channels of floats.
    [[nodiscard]] int rate() const { return static_cast<int>(m_spec.rate); }
    [[nodiscard]] int channels() const { return m_spec.channels; }
    // After openStream(): how many frames come at a time; zero when the server does not say.
    [[nodiscard]] std::size_t blockFrames() const;

    // For the reading thread, between start() and the end: waits until there is something to read
    // or know about, or wake() was called.
    void waitForSamples() { m_arrived.acquire(); }
    void wake() { m_arrived.release(); }
    [[nodiscard]] std::size_t read(float* samples, std::size_t count);
    // Why no more samples come, zero while they do.
    [[nodiscard]] int lost() const { return m_lost; }
    // Whether samples had to be thrown away because nobody read them in time.
    [[nodiscard]] bool hasGaps() const { return m_hasGaps; }

private:
    class Lock;

    [[nodiscard]] int findMicrophone();
    void take(const pa_source_info& source);
    [[nodiscard]] int waitUntil(const std::function<bool()>& done);
    [[nodiscard]] int waitForOperation(pa_operation* operation);
    [[nodiscard]] int error() const;
    [[nodiscard]] bool isAlive() const;
    [[nodiscard]] int cork(bool corked);

    // Capture thread.
    void changed();
    void copySamples();

    pa_threaded_mainloop* m_mainloop = nullptr;
    pa_context* m_context = nullptr;
    pa_stream* m_stream = nullptr;
    QByteArray m_source;
    bool m_isPluggedIn = false;
    int m_answer = 0; // of the last question
    pa_sample_spec m_spec{};
    std::optional<SampleRing> m_ring;
    std::counting_semaphore<> m_arrived{0};
    std::atomic<int> m_lost{0};
    std::atomic<bool> m_hasGaps{false};
};

} // namespace dorvane

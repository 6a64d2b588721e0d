// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/module/GainRamp.h"
#include "platform/linux/sound/module/PcmHistory.h"
#include "platform/linux/sound/SoundModule.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <pulse/pulseaudio.h>

namespace dorvane {

// One play as a stream of the sound server. Lives on the audio thread; the members under "any
// thread" are what the main thread sees of it.
class PulseVoice {
public:
    // `closed` is called when nothing is left to do, after which the voice may be destroyed, but
    // not from inside that call.
    PulseVoice(std::shared_ptr<SoundDecoder> decoder, SoundVoiceStart start,
               std::function<void(PulseVoice&)> closed);
    ~PulseVoice();
    PulseVoice(const PulseVoice&) = delete;
    PulseVoice& operator=(const PulseVoice&) = delete;

    // Connects a stream, if that was not done yet; the context must be ready.
    void start(pa_context* context);
    // The server cannot be reached or went away.
    void fail(const char* reason);
    // Fades out, so that what was heard is as long as the play was until `moment`.
    void stop(pa_usec_t moment);
    void setPaused(bool paused);

    // Any thread.
    void setVolume(float volume) { m_volume = volume; }
    [[nodiscard]] Sound::Seconds position() const;

private:
    enum class State { Waiting, Connecting, Playing, Draining, Fading, Closed };

    // What position() goes by: the stream's time at a moment, and whether it moves on.
    struct Heard {
        pa_usec_t time = 0;
        pa_usec_t at = 0;
        pa_usec_t written = 0;
        bool moving = false;
    };

    void streamChanged();
    void connected();
    void write(std::size_t bytes);
    void drain();
    void drained(bool success);
    void rewriteTail(bool success);
    void cork();
    [[nodiscard]] std::int64_t lastFrame(std::int64_t readFrame) const;
    void noteTime();
    void finish(bool completed);
    void close();
    void keep(pa_operation* operation);
    void dropOperation();

    std::shared_ptr<SoundDecoder> m_decoder;
    const Sound::Seconds m_startPosition;
    std::function<void(bool)> m_finished;
    std::function<void(PulseVoice&)> m_closed;
    std::atomic<float> m_volume;
    // Moments of the server library's clock.
    pa_usec_t m_asked;
    pa_usec_t m_pausedSince;
    pa_usec_t m_pausedFor = 0;
    pa_usec_t m_stopped = 0;
    GainRamp m_gain;
    PcmHistory m_history;
    State m_state = State::Waiting;
    bool m_paused;
    bool m_corked = false; // what the server was last told of m_paused
    pa_stream* m_stream = nullptr;
    pa_operation* m_operation = nullptr; // the one whose answer is waited for

    mutable std::mutex m_heardLock;
    Heard m_heard;
};

} // namespace dorvane

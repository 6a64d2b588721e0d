// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/PulseVoice.h"

#include "platform/Log.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace dorvane {

namespace {

constexpr std::size_t frameBytes = soundChannels * sizeof(float);
constexpr auto serverDecides = std::numeric_limits<std::uint32_t>::max();

// How much the server holds: enough for a busy machine, and a change of volume is heard soon.
constexpr std::uint32_t targetBytes = soundRate / 10 * frameBytes;

constexpr std::size_t fadeFrames = soundRate / 100;
// The server goes on reading while a rewritten tail is on its way to it.
constexpr std::int64_t rewriteMargin = soundRate / 200;

// A stop is never put off for longer, however late the sound was.
constexpr std::int64_t longestDelay = soundRate / 4;

Sound::Seconds seconds(pa_usec_t time) {
    return std::chrono::microseconds(time);
}

pa_usec_t microseconds(Sound::Seconds time) {
    return static_cast<pa_usec_t>(time.count() * static_cast<double>(PA_USEC_PER_SEC));
}

PulseVoice& voice(void* self) {
    return *static_cast<PulseVoice*>(self);
}

// The server's library is no place for an exception to pass through.
template<typename Step>
void withMemory(PulseVoice& voice, Step step) {
    try {
        step();
    } catch (const std::bad_alloc&) {
        voice.fail("there is not enough memory");
    }
}

} // namespace

PulseVoice::PulseVoice(std::shared_ptr<SoundDecoder> decoder, SoundVoiceStart start,
                       std::function<void(PulseVoice&)> closed)
    : m_decoder(std::move(decoder))
    , m_startPosition(m_decoder->start())
    , m_finished(std::move(start.finished))
    , m_closed(std::move(closed))
    , m_volume(start.volume)
    , m_asked(pa_rtclock_now() - microseconds(start.waited))
    , m_pausedSince(m_asked)
    // A sound entered in its middle does not begin at silence by itself.
    , m_gain(m_startPosition > Sound::Seconds(0) ? 0.0F : start.volume)
    , m_paused(start.paused) {}

PulseVoice::~PulseVoice() {
    m_closed = nullptr;
    close();
}

void PulseVoice::start(pa_context* context) {
    if (m_state != State::Waiting)
        return;
    const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, soundRate, soundChannels};
    m_stream = pa_stream_new(context, "Dorvane", &spec, nullptr);
    if (!m_stream) {
        fail(pa_strerror(pa_context_errno(context)));
        return;
    }
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* self) { voice(self).streamChanged(); }, this);
    pa_stream_set_write_callback(
        m_stream,
        [](pa_stream*, std::size_t bytes, void* self) {
            withMemory(voice(self), [&] { voice(self).write(bytes); });
        },
        this);
    pa_stream_set_latency_update_callback(
        m_stream, [](pa_stream*, void* self) { voice(self).noteTime(); }, this);

    const pa_buffer_attr buffer{serverDecides, targetBytes, serverDecides, serverDecides,
                                serverDecides};
    int flags =
        PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY;
    m_corked = m_paused;
    if (m_corked)
        flags |= PA_STREAM_START_CORKED;
    m_state = State::Connecting;
    if (pa_stream_connect_playback(m_stream, nullptr, &buffer,
                                   static_cast<pa_stream_flags_t>(flags), nullptr, nullptr) < 0)
        fail(pa_strerror(pa_context_errno(context)));
}

void PulseVoice::fail(const char* reason) {
    if (m_finished)
        qCWarning(logPlatform).noquote() << "a sound cannot be heard:" << reason;
    finish(false);
}

void PulseVoice::stop(pa_usec_t moment) {
    m_stopped = moment;
    m_finished = nullptr;
    // A stream that the server is still making cannot be given up: it would be made for nobody, and
    // a sink has room for a few hundred. connected() does it.
    if (m_state == State::Connecting)
        return;
    if (m_state == State::Waiting || m_paused) {
        close();
    } else if (m_state == State::Playing) {
        m_state = State::Fading;
        pa_stream_set_write_callback(m_stream, nullptr, nullptr);
        keep(pa_stream_update_timing_info(
            m_stream,
            [](pa_stream*, int success, void* self) {
                withMemory(voice(self), [&] { voice(self).rewriteTail(success != 0); });
            },
            this));
    }
}

void PulseVoice::setPaused(bool paused) {
    if (paused == m_paused)
        return;
    m_paused = paused;
    if (paused)
        m_pausedSince = pa_rtclock_now();
    else
        m_pausedFor += pa_rtclock_now() - m_pausedSince;
    if (m_stream && m_state != State::Connecting)
        cork();
}

void PulseVoice::cork() {
    m_corked = m_paused;
    if (pa_operation* operation = pa_stream_cork(m_stream, m_corked ? 1 : 0, nullptr, nullptr))
        pa_operation_unref(operation);
    noteTime();
}

Sound::Seconds PulseVoice::position() const {
    const std::lock_guard lock(m_heardLock);
    pa_usec_t time = m_heard.time;
    if (m_heard.moving)
        time += pa_rtclock_now() - m_heard.at;
    return m_startPosition + seconds(std::min(time, m_heard.written));
}

void PulseVoice::streamChanged() {
    switch (pa_stream_get_state(m_stream)) {
    case PA_STREAM_READY:
        connected();
        break;
    case PA_STREAM_FAILED:
        fail(pa_strerror(pa_context_errno(pa_stream_get_context(m_stream))));
        break;
    case PA_STREAM_TERMINATED: // somebody disconnected it, as a mixer may
        finish(false);
        break;
    default:
        break;
    }
}

// Does what was asked for meanwhile.
void PulseVoice::connected() {
    m_state = State::Playing;
    if (m_stopped > 0) {
        close();
        return;
    }
    if (m_corked != m_paused)
        cork();
    // A server with slow outputs holds more than it was asked to.
    if (const pa_buffer_attr* buffer = pa_stream_get_buffer_attr(m_stream))
        m_history.setReach(buffer->tlength / frameBytes + soundRate / 10);
}

void PulseVoice::write(std::size_t bytes) {
    std::size_t frames = bytes / frameBytes;
    while (frames > 0) {
        void* data = nullptr;
        std::size_t room = frames * frameBytes;
        if (pa_stream_begin_write(m_stream, &data, &room) < 0 || room < frameBytes)
            return;
        const std::size_t wanted = std::min(frames, room / frameBytes);
        auto* samples = static_cast<float*>(data);
        const std::size_t got = m_decoder->read(samples, wanted);
        m_gain.apply(m_volume, samples, got);
        m_history.append(samples, got);
        if (got > 0)
            pa_stream_write(m_stream, data, got * frameBytes, nullptr, 0, PA_SEEK_RELATIVE);
        else
            pa_stream_cancel_write(m_stream);
        if (got < wanted && m_decoder->isStarved()) {
            fail("its file is not read in time");
            return;
        }
        if (got < wanted) {
            drain();
            break;
        }
        frames -= got;
    }
    noteTime();
}

void PulseVoice::drain() {
    if (m_state == State::Playing)
        m_state = State::Draining;
    pa_stream_set_write_callback(m_stream, nullptr, nullptr);
    keep(pa_stream_drain(
        m_stream, [](pa_stream*, int success, void* self) { voice(self).drained(success != 0); },
        this));
}

void PulseVoice::drained(bool success) {
    dropOperation();
    finish(success);
}

// Replaces what the server has not read yet by what is still to be heard, faded, and silence.
void PulseVoice::rewriteTail(bool success) {
    dropOperation();
    const pa_timing_info* timing = pa_stream_get_timing_info(m_stream);
    if (!success || !timing || timing->read_index_corrupt) {
        close();
        return;
    }
    const std::int64_t read = timing->read_index / static_cast<std::int64_t>(frameBytes);
    // What is no longer kept cannot be faded.
    const std::int64_t fade = std::max(
        {read + rewriteMargin, lastFrame(read) - std::int64_t{fadeFrames}, m_history.begin()});
    const std::int64_t first = std::min(fade, m_history.end());
    const auto loud = static_cast<std::size_t>(fade - first);
    const std::size_t heard = loud + fadeFrames;

    std::vector<float> tail = m_history.from(first);
    const std::size_t held = tail.size() / soundChannels;
    if (held < heard) {
        tail.resize(heard * soundChannels);
        float* more = tail.data() + held * soundChannels;
        m_gain.apply(m_volume, more, m_decoder->read(more, heard - held));
    }
    for (std::size_t frame = 0; frame < fadeFrames; ++frame)
        for (std::size_t channel = 0; channel < soundChannels; ++channel)
            tail[(loud + frame) * soundChannels + channel] *=
                1.0F - static_cast<float>(frame) / static_cast<float>(fadeFrames);
    std::fill(tail.begin() + static_cast<std::ptrdiff_t>(heard * soundChannels), tail.end(), 0.0F);

    if (pa_stream_write(m_stream, tail.data(), tail.size() * sizeof(float), nullptr,
                        first * static_cast<std::int64_t>(frameBytes), PA_SEEK_ABSOLUTE) < 0)
        close();
    else
        drain();
}

// Where the sound must end to have been heard as long as it was played. The server has read up to
// `readFrame`.
std::int64_t PulseVoice::lastFrame(std::int64_t readFrame) const {
    const pa_usec_t played = m_stopped - std::min(m_stopped, m_asked + m_pausedFor);
    return std::min(static_cast<std::int64_t>(played * soundRate / PA_USEC_PER_SEC),
                    readFrame + longestDelay);
}

void PulseVoice::noteTime() {
    if (!m_stream)
        return;
    pa_usec_t time = 0;
    const bool known = pa_stream_get_time(m_stream, &time) >= 0;
    const auto written = static_cast<pa_usec_t>(m_history.end()) * PA_USEC_PER_SEC / soundRate;
    const std::lock_guard lock(m_heardLock);
    if (!known)
        time = m_heard.time;
    m_heard = {time, pa_rtclock_now(), written, known && !m_paused};
}

void PulseVoice::finish(bool completed) {
    if (const auto finished = std::exchange(m_finished, nullptr))
        finished(completed);
    close();
}

void PulseVoice::close() {
    m_state = State::Closed;
    // A drain that is not cancelled would be answered into freed memory.
    dropOperation();
    if (m_stream) {
        pa_stream_set_state_callback(m_stream, nullptr, nullptr);
        pa_stream_set_write_callback(m_stream, nullptr, nullptr);
        pa_stream_set_latency_update_callback(m_stream, nullptr, nullptr);
        pa_stream_disconnect(m_stream);
        pa_stream_unref(std::exchange(m_stream, nullptr));
    }
    m_decoder.reset();
    if (const auto closed = std::exchange(m_closed, nullptr))
        closed(*this);
}

void PulseVoice::keep(pa_operation* operation) {
    dropOperation();
    m_operation = operation;
    if (!m_operation) // the server has just gone
        finish(false);
}

void PulseVoice::dropOperation() {
    if (!m_operation)
        return;
    pa_operation_cancel(m_operation);
    pa_operation_unref(std::exchange(m_operation, nullptr));
}

} // namespace dorvane

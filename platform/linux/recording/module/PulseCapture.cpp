// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/module/PulseCapture.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace dorvane {

namespace {

constexpr pa_usec_t patience = 5 * PA_USEC_PER_SEC;
constexpr int blocksPerSecond = 100;
constexpr auto serverDecides = std::numeric_limits<std::uint32_t>::max();

// Without a microphone the server offers what is being played, which nobody means.
bool isMicrophone(const pa_source_info& source) {
    return source.monitor_of_sink == PA_INVALID_INDEX;
}

bool isPluggedIn(const pa_source_info& source) {
    return !source.active_port || source.active_port->available != PA_PORT_AVAILABLE_NO;
}

} // namespace

class PulseCapture::Lock {
public:
    explicit Lock(pa_threaded_mainloop* mainloop) : m_mainloop(mainloop) {
        pa_threaded_mainloop_lock(m_mainloop);
    }
    ~Lock() { pa_threaded_mainloop_unlock(m_mainloop); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    pa_threaded_mainloop* m_mainloop;
};

PulseCapture::~PulseCapture() {
    if (!m_mainloop)
        return;
    pa_threaded_mainloop_stop(m_mainloop);
    // The capture thread is gone; from here on its things belong to this one.
    if (m_stream) {
        pa_stream_set_state_callback(m_stream, nullptr, nullptr);
        pa_stream_set_read_callback(m_stream, nullptr, nullptr);
        pa_stream_disconnect(m_stream);
        pa_stream_unref(m_stream);
    }
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
    }
    pa_threaded_mainloop_free(m_mainloop);
}

int PulseCapture::connect() {
    m_mainloop = pa_threaded_mainloop_new();
    pa_threaded_mainloop_set_name(m_mainloop, "microphone");
    m_context = pa_context_new(pa_threaded_mainloop_get_api(m_mainloop), "Dorvane");
    pa_context_set_state_callback(
        m_context, [](pa_context*, void* self) { static_cast<PulseCapture*>(self)->changed(); },
        this);
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0)
        return error();
    pa_threaded_mainloop_start(m_mainloop);
    const Lock lock(m_mainloop);
    return waitUntil([this] { return pa_context_get_state(m_context) == PA_CONTEXT_READY; });
}

int PulseCapture::findDefaultSource() {
    const Lock lock(m_mainloop);
    const int code = waitForOperation(pa_context_get_server_info(
        m_context,
        [](pa_context*, const pa_server_info* info, void* self) {
            auto& capture = *static_cast<PulseCapture*>(self);
            if (info && info->default_source_name)
                capture.m_source = info->default_source_name;
            pa_threaded_mainloop_signal(capture.m_mainloop, 0);
        },
        this));
    if (code != PA_OK)
        return code;
    return m_source.isEmpty() ? PA_ERR_NOENTITY : PA_OK;
}

int PulseCapture::readSource() {
    const Lock lock(m_mainloop);
    m_answer = PA_ERR_NOENTITY;
    const int code = waitForOperation(pa_context_get_source_info_by_name(
        m_context, m_source.constData(),
        [](pa_context*, const pa_source_info* info, int, void* self) {
            auto& capture = *static_cast<PulseCapture*>(self);
            if (info && isMicrophone(*info))
                capture.take(*info);
            pa_threaded_mainloop_signal(capture.m_mainloop, 0);
        },
        this));
    // A default source that has gone is answered with an error, too.
    return code == PA_OK && m_answer == PA_OK ? PA_OK : findMicrophone();
}

// With the lock held. The first that is plugged in, else the first.
int PulseCapture::findMicrophone() {
    const int code = waitForOperation(pa_context_get_source_info_list(
        m_context,
        [](pa_context*, const pa_source_info* info, int, void* self) {
            auto& capture = *static_cast<PulseCapture*>(self);
            const bool isFound = capture.m_answer == PA_OK;
            if (info && isMicrophone(*info) && (!isFound || !capture.m_isPluggedIn))
                if (!isFound || isPluggedIn(*info))
                    capture.take(*info);
            pa_threaded_mainloop_signal(capture.m_mainloop, 0);
        },
        this));
    return code == PA_OK ? m_answer : code;
}

void PulseCapture::take(const pa_source_info& source) {
    m_source = source.name;
    m_isPluggedIn = isPluggedIn(source);
    m_spec = {PA_SAMPLE_FLOAT32NE, source.sample_spec.rate,
              std::min<std::uint8_t>(source.sample_spec.channels, 2)};
    m_answer = PA_OK;
}

int PulseCapture::makeStream() {
    const Lock lock(m_mainloop);
    m_stream = pa_stream_new(m_context, "Recording", &m_spec, nullptr);
    if (!m_stream)
        return error();
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* self) { static_cast<PulseCapture*>(self)->changed(); },
        this);
    pa_stream_set_read_callback(
        m_stream,
        [](pa_stream*, std::size_t, void* self) {
            static_cast<PulseCapture*>(self)->copySamples();
        },
        this);
    return PA_OK;
}

int PulseCapture::openStream() {
    const Lock lock(m_mainloop);
    const auto blockBytes =
        static_cast<std::uint32_t>(pa_frame_size(&m_spec) * m_spec.rate / blocksPerSecond);
    const pa_buffer_attr buffer{serverDecides, serverDecides, serverDecides, serverDecides,
                                blockBytes};
    // Of a microphone that is unplugged the server would go on with another source, and that may
    // be what the machine is playing.
    constexpr auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_record(m_stream, m_source.constData(), &buffer, flags) < 0)
        return error();
    return waitUntil([this] { return pa_stream_get_state(m_stream) == PA_STREAM_READY; });
}

std::size_t PulseCapture::blockFrames() const {
    const Lock lock(m_mainloop);
    const pa_buffer_attr* buffer = pa_stream_get_buffer_attr(m_stream);
    return buffer ? buffer->fragsize / pa_frame_size(&m_spec) : 0;
}

void PulseCapture::makeBuffers() {
    // Sources without hardware deliver two seconds at a time, and a disk may be slow.
    constexpr std::size_t seconds = 4;
    m_ring.emplace(seconds * m_spec.rate * m_spec.channels);
}

int PulseCapture::start() {
    return cork(false);
}

int PulseCapture::stop() {
    return cork(true);
}

std::size_t PulseCapture::read(float* samples, std::size_t count) {
    return m_ring->read(samples, count);
}

int PulseCapture::cork(bool corked) {
    const Lock lock(m_mainloop);
    m_answer = PA_ERR_UNKNOWN;
    const int code = waitForOperation(pa_stream_cork(
        m_stream, corked ? 1 : 0,
        [](pa_stream*, int success, void* self) {
            auto& capture = *static_cast<PulseCapture*>(self);
            if (success)
                capture.m_answer = PA_OK;
            pa_threaded_mainloop_signal(capture.m_mainloop, 0);
        },
        this));
    return code == PA_OK ? m_answer : code;
}

// With the lock held.
int PulseCapture::waitUntil(const std::function<bool()>& done) {
    std::pair<PulseCapture*, bool> timeout{this, false};
    pa_time_event* const timer = pa_context_rttime_new(
        m_context, pa_rtclock_now() + patience,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* data) {
            auto& [self, isOver] = *static_cast<std::pair<PulseCapture*, bool>*>(data);
            isOver = true;
            pa_threaded_mainloop_signal(self->m_mainloop, 0);
        },
        &timeout);
    while (!done() && isAlive() && !timeout.second)
        pa_threaded_mainloop_wait(m_mainloop);
    pa_threaded_mainloop_get_api(m_mainloop)->time_free(timer);
    if (done())
        return PA_OK;
    return timeout.second ? PA_ERR_TIMEOUT : error();
}

int PulseCapture::waitForOperation(pa_operation* operation) {
    if (!operation)
        return error();
    const int code =
        waitUntil([operation] { return pa_operation_get_state(operation) == PA_OPERATION_DONE; });
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
    return code;
}

int PulseCapture::error() const {
    const int code = pa_context_errno(m_context);
    return code == PA_OK ? PA_ERR_KILLED : code;
}

bool PulseCapture::isAlive() const {
    return PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)) &&
           (!m_stream || pa_stream_get_state(m_stream) == PA_STREAM_UNCONNECTED ||
            PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)));
}

void PulseCapture::changed() {
    if (!isAlive()) {
        m_lost = error();
        wake();
    }
    pa_threaded_mainloop_signal(m_mainloop, 0);
}

void PulseCapture::copySamples() {
    const void* samples = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(m_stream, &samples, &bytes) >= 0 && bytes > 0) {
        // A hole in the server's memory is silence.
        if (!m_ring->write(static_cast<const float*>(samples), bytes / sizeof(float)))
            m_hasGaps = true;
        pa_stream_drop(m_stream);
    }
    wake();
}

} // namespace dorvane

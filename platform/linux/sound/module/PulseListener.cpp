// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/PulseListener.h"

#include "platform/linux/sound/SoundModule.h"

#include <limits>
#include <utility>

namespace dorvane {

namespace {

constexpr std::uint32_t blockBytes = soundRate / 100 * sizeof(float);
constexpr auto serverDecides = std::numeric_limits<std::uint32_t>::max();

} // namespace

PulseListener::~PulseListener() {
    drop();
    end();
}

void PulseListener::connected(pa_context* context) {
    const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, soundRate, 1};
    m_stream = pa_stream_new(context, "Dorvane listens", &spec, nullptr);
    if (!m_stream)
        return;
    pa_stream_set_state_callback(
        m_stream,
        [](pa_stream* stream, void* self) {
            if (pa_stream_get_state(stream) == PA_STREAM_READY)
                static_cast<PulseListener*>(self)->m_heard(nullptr, 0);
        },
        this);
    pa_stream_set_read_callback(
        m_stream,
        [](pa_stream*, std::size_t, void* self) { static_cast<PulseListener*>(self)->read(); },
        this);
    const pa_buffer_attr buffer{serverDecides, serverDecides, serverDecides, serverDecides,
                                blockBytes};
    (void)pa_stream_connect_record(m_stream, "@DEFAULT_MONITOR@", &buffer,
                                   PA_STREAM_ADJUST_LATENCY);
}

void PulseListener::lost(const char*) {
    drop();
}

void PulseListener::read() {
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_readable_size(m_stream) > 0 && pa_stream_peek(m_stream, &data, &bytes) >= 0 &&
           bytes > 0) {
        if (data) // nothing where the server has lost some
            m_heard(static_cast<const float*>(data), bytes / sizeof(float));
        pa_stream_drop(m_stream);
    }
}

void PulseListener::drop() {
    if (!m_stream)
        return;
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_set_read_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
    pa_stream_unref(std::exchange(m_stream, nullptr));
}

} // namespace dorvane

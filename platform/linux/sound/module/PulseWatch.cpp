// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/PulseWatch.h"

#include <string_view>
#include <unistd.h>
#include <utility>

namespace dorvane {

namespace {

using Obstacle = SoundOutputState::Obstacle;

PulseWatch& watch(void* self) {
    return *static_cast<PulseWatch*>(self);
}

int percent(pa_volume_t volume) {
    return static_cast<int>((std::uint64_t{volume} * 100 + PA_VOLUME_NORM / 2) / PA_VOLUME_NORM);
}

bool isOurs(const pa_sink_input_info& stream) {
    const char* process = pa_proplist_gets(stream.proplist, PA_PROP_APPLICATION_PROCESS_ID);
    return process && process == std::to_string(getpid());
}

Obstacle obstacleOf(const pa_sink_info& sink) {
    // What servers put there so that there is an output at all.
    if (std::string_view(sink.name).starts_with("auto_null"))
        return Obstacle::DummyOutput;
    if (sink.active_port && sink.active_port->available == PA_PORT_AVAILABLE_NO)
        return Obstacle::NoOutput; // nothing is plugged in
    if (sink.mute)
        return Obstacle::Muted;
    return percent(pa_cvolume_max(&sink.volume)) == 0 ? Obstacle::VolumeZero : Obstacle::None;
}

} // namespace

PulseWatch::~PulseWatch() {
    dropOperation();
    end();
}

void PulseWatch::connected(pa_context* context) {
    m_context = context;
    pa_context_set_subscribe_callback(
        context,
        [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
            watch(self).ask();
        },
        this);
    constexpr auto what = static_cast<pa_subscription_mask_t>(
        PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SINK_INPUT | PA_SUBSCRIPTION_MASK_SERVER);
    if (pa_operation* operation = pa_context_subscribe(context, what, nullptr, nullptr))
        pa_operation_unref(operation);
    ask();
}

void PulseWatch::lost(const char* reason) {
    dropOperation();
    m_context = nullptr;
    tell({.obstacle = Obstacle::NoServer, .detail = QString::fromUtf8(reason), .volume = 0});
}

void PulseWatch::ask() {
    if (m_operation) {
        m_isOutdated = true;
        return;
    }
    m_isOutdated = false;
    m_ownSink.reset();
    m_ownIsMuted = false;
    m_asked = {.obstacle = Obstacle::NoOutput, .detail = {}, .volume = 0};
    keep(pa_context_get_server_info(
        m_context,
        [](pa_context*, const pa_server_info* server, void* self) {
            watch(self).serverAnswered(server);
        },
        this));
}

void PulseWatch::serverAnswered(const pa_server_info* server) {
    m_defaultSink = server && server->default_sink_name ? server->default_sink_name : "";
    keep(pa_context_get_sink_input_info_list(
        m_context,
        [](pa_context*, const pa_sink_input_info* stream, int end, void* self) {
            end ? watch(self).streamsAnswered() : watch(self).streamAnswered(stream);
        },
        this));
}

void PulseWatch::streamAnswered(const pa_sink_input_info* stream) {
    if (!isOurs(*stream))
        return;
    m_ownSink = stream->sink;
    m_ownIsMuted = m_ownIsMuted || stream->mute || pa_cvolume_is_muted(&stream->volume);
}

void PulseWatch::streamsAnswered() {
    const pa_sink_info_cb_t answer = [](pa_context*, const pa_sink_info* sink, int end,
                                        void* self) {
        end ? watch(self).answered() : watch(self).sinkAnswered(*sink);
    };
    if (m_ownSink)
        keep(pa_context_get_sink_info_by_index(m_context, *m_ownSink, answer, this));
    else if (!m_defaultSink.empty())
        keep(pa_context_get_sink_info_by_name(m_context, m_defaultSink.c_str(), answer, this));
    else
        answered();
}

void PulseWatch::sinkAnswered(const pa_sink_info& sink) {
    m_asked = {.obstacle = obstacleOf(sink),
               .detail = QString::fromUtf8(sink.description),
               .volume = percent(pa_cvolume_max(&sink.volume))};
    if (m_asked.obstacle == Obstacle::None && m_ownIsMuted)
        m_asked.obstacle = Obstacle::Muted; // in a mixer that remembers it for Dorvane
}

void PulseWatch::answered() {
    dropOperation();
    tell(m_asked);
    if (m_isOutdated)
        ask();
}

void PulseWatch::keep(pa_operation* operation) {
    dropOperation();
    m_operation = operation; // null when the server has just gone, which lost() tells of
}

void PulseWatch::dropOperation() {
    if (!m_operation)
        return;
    pa_operation_cancel(m_operation);
    pa_operation_unref(std::exchange(m_operation, nullptr));
}

void PulseWatch::tell(const SoundOutputState& state) {
    if (m_told == state)
        return;
    m_told = state;
    m_changed(state);
}

} // namespace dorvane

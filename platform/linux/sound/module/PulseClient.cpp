// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/PulseClient.h"

#include <utility>

namespace dorvane {

PulseClient::~PulseClient() {
    end();
}

void PulseClient::begin() {
    connect(PA_CONTEXT_NOFLAGS);
}

void PulseClient::end() {
    if (m_retry)
        m_api.time_free(std::exchange(m_retry, nullptr));
    dropContext();
}

void PulseClient::connect(pa_context_flags_t flags) {
    m_context = pa_context_new(&m_api, "Dorvane");
    pa_context_set_state_callback(
        m_context,
        [](pa_context*, void* self) { static_cast<PulseClient*>(self)->contextChanged(); }, this);
    // A failure is told of as a change of the state.
    (void)pa_context_connect(m_context, nullptr, flags, nullptr);
}

void PulseClient::contextChanged() {
    const pa_context_state_t state = pa_context_get_state(m_context);
    if (state == PA_CONTEXT_READY) {
        connected(m_context);
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        lost(pa_strerror(pa_context_errno(m_context)));
        retryLater();
    }
}

// The context goes then, too: this is its own call.
void PulseClient::retryLater() {
    timeval when{};
    pa_timeval_add(pa_gettimeofday(&when), PA_USEC_PER_SEC);
    if (m_retry) {
        m_api.time_restart(m_retry, &when);
        return;
    }
    m_retry = m_api.time_new(
        &m_api, &when,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
            auto& client = *static_cast<PulseClient*>(self);
            client.dropContext();
            // Whether a server is to be started was decided at the first attempt.
            client.connect(PA_CONTEXT_NOAUTOSPAWN);
        },
        this);
}

void PulseClient::dropContext() {
    if (!m_context)
        return;
    pa_context_set_state_callback(m_context, nullptr, nullptr);
    pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
    pa_context_disconnect(m_context);
    pa_context_unref(std::exchange(m_context, nullptr));
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pulse/pulseaudio.h>

namespace dorvane {

// A connection to the sound server of its own, beside the one that sounds are played on, so that
// nothing that is asked here can disturb a sound. While it cannot be had it is tried again every
// second. Audio thread only.
class PulseClient {
public:
    explicit PulseClient(pa_mainloop_api& api) : m_api(api) {}
    virtual ~PulseClient();
    PulseClient(const PulseClient&) = delete;
    PulseClient& operator=(const PulseClient&) = delete;

    void begin();
    // Nothing is called afterwards. A second call does nothing more.
    void end();

protected:
    virtual void connected(pa_context* context) = 0;
    // Also when there never was a connection. Whatever was made in the context is gone.
    virtual void lost(const char* reason) = 0;

private:
    void connect(pa_context_flags_t flags);
    void contextChanged();
    void retryLater();
    void dropContext();

    pa_mainloop_api& m_api;
    pa_context* m_context = nullptr;
    pa_time_event* m_retry = nullptr;
};

} // namespace dorvane

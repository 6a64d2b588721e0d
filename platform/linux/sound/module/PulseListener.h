// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/module/PulseClient.h"

#include <cstddef>
#include <functional>

namespace dorvane {

// Records what the default output plays. Audio thread only.
class PulseListener final : public PulseClient {
public:
    using Heard = std::function<void(const float* samples, std::size_t count)>;

    // `heard` as SoundModule::listen() has it.
    PulseListener(pa_mainloop_api& api, Heard heard)
        : PulseClient(api), m_heard(std::move(heard)) {}
    ~PulseListener() override;

private:
    void connected(pa_context* context) override;
    void lost(const char* reason) override;

    void read();
    void drop();

    Heard m_heard;
    pa_stream* m_stream = nullptr;
};

} // namespace dorvane

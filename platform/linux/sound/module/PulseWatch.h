// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/module/PulseClient.h"
#include "platform/SoundOutput.h"

#include <functional>
#include <optional>
#include <string>

namespace dorvane {

// Follows the state of the output on which our sounds are heard: that of a sound of ours which
// plays, else the default one. Audio thread only.
class PulseWatch final : public PulseClient {
public:
    PulseWatch(pa_mainloop_api& api, std::function<void(const SoundOutputState&)> changed)
        : PulseClient(api), m_changed(std::move(changed)) {}
    ~PulseWatch() override;

private:
    void connected(pa_context* context) override;
    void lost(const char* reason) override;

    // One question after the other: which output, how it is.
    void ask();
    void serverAnswered(const pa_server_info* server);
    void streamAnswered(const pa_sink_input_info* stream);
    void streamsAnswered();
    void sinkAnswered(const pa_sink_info& sink);
    void answered();
    void keep(pa_operation* operation);
    void dropOperation();
    void tell(const SoundOutputState& state);

    std::function<void(const SoundOutputState&)> m_changed;
    pa_context* m_context = nullptr; // while connected
    pa_operation* m_operation = nullptr;
    bool m_isOutdated = false; // something changed while it was being asked
    std::string m_defaultSink;
    std::optional<std::uint32_t> m_ownSink; // of a stream of ours
    bool m_ownIsMuted = false;
    SoundOutputState m_asked;
    std::optional<SoundOutputState> m_told;
};

} // namespace dorvane

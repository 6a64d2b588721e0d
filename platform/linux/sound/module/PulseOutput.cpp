// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/module/PulseOutput.h"

#include "platform/linux/sound/module/PulseListener.h"
#include "platform/linux/sound/module/PulseWatch.h"
#include "platform/Log.h"

#include <algorithm>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

// The main thread's end of a voice.
class PulseOutput::Handle final : public SoundVoice {
public:
    Handle(PulseOutput& output, std::shared_ptr<PulseVoice> voice)
        : m_output(output), m_voice(std::move(voice)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() override {
        m_output.post([voice = std::move(m_voice), now = pa_rtclock_now()] { voice->stop(now); });
    }

    void setPaused(bool paused) override {
        m_output.post([voice = m_voice, paused] { voice->setPaused(paused); });
    }
    void setVolume(float volume) override { m_voice->setVolume(volume); }
    [[nodiscard]] Sound::Seconds position() const override { return m_voice->position(); }

private:
    PulseOutput& m_output;
    std::shared_ptr<PulseVoice> m_voice;
};

// The main thread's end of somebody with a connection of its own.
class PulseOutput::ClientHandle final : public SoundWatch {
public:
    ClientHandle(PulseOutput& output, std::shared_ptr<PulseClient> client)
        : m_output(output), m_client(std::move(client)) {
        m_output.post([begun = m_client] { begun->begin(); });
    }
    ClientHandle(const ClientHandle&) = delete;
    ClientHandle& operator=(const ClientHandle&) = delete;
    ~ClientHandle() override {
        m_output.post([client = std::move(m_client)] { client->end(); });
    }

private:
    PulseOutput& m_output;
    std::shared_ptr<PulseClient> m_client;
};

PulseOutput::PulseOutput()
    : m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), m_mainloop(pa_threaded_mainloop_new()) {
    pa_threaded_mainloop_set_name(m_mainloop, "sound output");
    pa_mainloop_api* api = pa_threaded_mainloop_get_api(m_mainloop);
    m_wakeEvent = api->io_new(
        api, m_wake, PA_IO_EVENT_INPUT,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* self) {
            static_cast<PulseOutput*>(self)->runCommands();
        },
        this);
    // The first sound need not wait for the connection if it is begun now.
    post([this] { connect(); });
    pa_threaded_mainloop_start(m_mainloop);
}

PulseOutput::~PulseOutput() {
    pa_threaded_mainloop_stop(m_mainloop);
    // The audio thread is gone; from here on its things belong to this one.
    m_commands.clear();
    m_voices.clear();
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
    }
    pa_threaded_mainloop_get_api(m_mainloop)->io_free(m_wakeEvent);
    pa_threaded_mainloop_free(m_mainloop);
    ::close(m_wake);
}

std::unique_ptr<SoundVoice> PulseOutput::play(std::shared_ptr<SoundDecoder> decoder,
                                              SoundVoiceStart start) {
    // Removed by a command, because the voice must outlive the call that closes it.
    const auto closed = [this](PulseVoice& voice) { post([this, &voice] { remove(voice); }); };
    auto voice = std::make_shared<PulseVoice>(std::move(decoder), std::move(start), closed);
    post([this, voice] { add(voice); });
    return std::make_unique<Handle>(*this, std::move(voice));
}

std::unique_ptr<SoundWatch>
PulseOutput::watch(std::function<void(const SoundOutputState&)> changed) {
    return std::make_unique<ClientHandle>(
        *this, std::make_shared<PulseWatch>(*pa_threaded_mainloop_get_api(m_mainloop),
                                            std::move(changed)));
}

std::unique_ptr<SoundWatch>
PulseOutput::listen(std::function<void(const float*, std::size_t)> heard) {
    return std::make_unique<ClientHandle>(
        *this, std::make_shared<PulseListener>(*pa_threaded_mainloop_get_api(m_mainloop),
                                               std::move(heard)));
}

void PulseOutput::post(Command command) {
    {
        const std::lock_guard lock(m_commandsLock);
        m_commands.push_back(std::move(command));
    }
    eventfd_write(m_wake, 1);
}

void PulseOutput::runCommands() {
    eventfd_t count = 0;
    eventfd_read(m_wake, &count);
    std::deque<Command> commands;
    {
        const std::lock_guard lock(m_commandsLock);
        commands.swap(m_commands);
    }
    for (const Command& command : commands)
        command();
}

void PulseOutput::add(const std::shared_ptr<PulseVoice>& voice) {
    m_voices.push_back(voice);
    if (m_context && !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))
        dropFailedContext();
    if (!m_context)
        connect();
    if (pa_context_get_state(m_context) == PA_CONTEXT_READY)
        voice->start(m_context);
}

void PulseOutput::remove(const PulseVoice& voice) {
    std::erase_if(m_voices, [&](const auto& each) { return each.get() == &voice; });
}

void PulseOutput::connect() {
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Dorvane");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "dorvane");
    m_context = pa_context_new_with_proplist(pa_threaded_mainloop_get_api(m_mainloop), "Dorvane",
                                             properties);
    pa_proplist_free(properties);
    pa_context_set_state_callback(
        m_context,
        [](pa_context*, void* self) { static_cast<PulseOutput*>(self)->contextChanged(); }, this);
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0)
        post([this] { dropFailedContext(); });
}

void PulseOutput::contextChanged() {
    const pa_context_state_t state = pa_context_get_state(m_context);
    if (state == PA_CONTEXT_READY) {
        const auto waiting = m_voices;
        for (const auto& voice : waiting)
            voice->start(m_context);
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        // Not from inside the context's own call.
        post([this] { dropFailedContext(); });
    }
}

// Voices learn of it one by one; those that come later find no context and try again.
void PulseOutput::dropFailedContext() {
    if (!m_context || PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))
        return;
    const int error = pa_context_errno(m_context);
    pa_context_set_state_callback(m_context, nullptr, nullptr);
    pa_context_unref(std::exchange(m_context, nullptr));
    const auto lost = m_voices;
    for (const auto& voice : lost)
        voice->fail(pa_strerror(error));
}

} // namespace dorvane

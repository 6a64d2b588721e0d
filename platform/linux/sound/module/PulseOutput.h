// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/module/PulseVoice.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <pulse/pulseaudio.h>
#include <vector>

namespace dorvane {

// The connection to the sound server and the one thread on which everything about it happens.
// Other threads put commands into a queue and never wait: connecting may take long, and so may
// starting a server that is not running yet. The connection stays open, so that the next sound
// starts at once; when it is lost, the next play makes a new one.
class PulseOutput {
public:
    PulseOutput();
    ~PulseOutput();
    PulseOutput(const PulseOutput&) = delete;
    PulseOutput& operator=(const PulseOutput&) = delete;

    // Any thread.
    [[nodiscard]] std::unique_ptr<SoundVoice> play(std::shared_ptr<SoundDecoder> decoder,
                                                   SoundVoiceStart start);
    [[nodiscard]] std::unique_ptr<SoundWatch>
    watch(std::function<void(const SoundOutputState&)> changed);
    [[nodiscard]] std::unique_ptr<SoundWatch>
    listen(std::function<void(const float*, std::size_t)> heard);

private:
    class Handle;
    class ClientHandle;
    using Command = std::function<void()>;

    // Any thread.
    void post(Command command);

    // Audio thread.
    void runCommands();
    void add(const std::shared_ptr<PulseVoice>& voice);
    void remove(const PulseVoice& voice);
    void connect();
    void contextChanged();
    void dropFailedContext();

    std::mutex m_commandsLock;
    std::deque<Command> m_commands;
    int m_wake = -1; // an eventfd, readable while there are commands

    pa_threaded_mainloop* m_mainloop = nullptr;
    pa_io_event* m_wakeEvent = nullptr;
    pa_context* m_context = nullptr;
    std::vector<std::shared_ptr<PulseVoice>> m_voices;
};

} // namespace dorvane

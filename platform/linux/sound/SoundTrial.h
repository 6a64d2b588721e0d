// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/SoundOutput.h"

#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace dorvane {

class ModuleSoundPlayer;
class Sound;
class SoundModule;
class SoundWatch;

// Plays a file exactly as it rings, and listens for it at the output's monitor. Main thread only;
// destroying it ends it without an answer.
class SoundTrial {
public:
    using Done = std::function<void(SoundProof proof)>;

    // Answers once, within some seconds, in a turn of its own; may be destroyed then. Both must
    // outlive the trial.
    SoundTrial(RunLoop& loop, ModuleSoundPlayer& player, const QString& path, Done done);
    ~SoundTrial();
    SoundTrial(const SoundTrial&) = delete;
    SoundTrial& operator=(const SoundTrial&) = delete;

private:
    // What was heard; the audio thread writes it.
    struct Recording {
        std::mutex lock;
        std::vector<float> samples;
    };

    void readFile();
    void listen(SoundModule& module, std::vector<float> expected);
    void play();
    void judge();
    void answer(SoundProof proof);

    RunLoop& m_loop;
    ModuleSoundPlayer& m_player;
    const QString m_path;
    Done m_done;
    std::vector<float> m_expected;
    const std::shared_ptr<Recording> m_recording = std::make_shared<Recording>();
    std::unique_ptr<SoundWatch> m_listening;
    std::unique_ptr<Sound> m_sound;
    RunLoopTimer m_patience;
    Lifeline<SoundTrial> m_lifeline{*this};
};

} // namespace dorvane

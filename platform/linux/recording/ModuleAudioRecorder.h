// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AudioRecorder.h"
#include "platform/Lifeline.h"
#include "platform/linux/recording/RecordingModule.h"
#include "platform/RunLoop.h"

#include <QThreadPool>

#include <atomic>
#include <cstdint>
#include <memory>

namespace dorvane {

// Recording by a module that the first recording brings into the process. Everything that waits for
// the sound server or the disk happens on a worker thread. The run loop must outlive it.
class ModuleAudioRecorder final : public AudioRecorder {
public:
    ModuleAudioRecorder(RunLoop& loop, QString modulePath);
    // finish(), for as long as it takes.
    ~ModuleAudioRecorder() override;

    // For the end of the program: keeps a recording that stop() is completing, discards one that
    // runs, and starts no other. Waits for that, but not for ever.
    void finish();

    [[nodiscard]] bool record(const QString& path, Finished finished) override;
    [[nodiscard]] bool isRecording() const override { return m_finished != nullptr; }
    void stop() override;
    void cancel() override;
    [[nodiscard]] float takeLevel() override;

private:
    using Error = SoundRecorder::Error;

    // Main thread.
    void finished(std::uint64_t number, const Error& error);

    // Worker thread.
    void start(std::uint64_t number, const QString& path,
               std::shared_ptr<RecordingMonitor> monitor);
    void complete(std::uint64_t number);
    [[nodiscard]] Error loadModule();
    void report(std::uint64_t number, const Error& error);

    // Any thread.
    void post(std::function<void(ModuleAudioRecorder&)> answer) const;

    RunLoop& m_loop;
    const QString m_modulePath;
    Finished m_finished; // set while recording
    bool m_stopping = false;
    std::uint64_t m_number = 0; // of the recording; answers about an older one are dropped
    std::shared_ptr<RecordingMonitor> m_monitor;
    std::unique_ptr<RecordingModule> m_module; // worker thread
    std::unique_ptr<SoundRecorder> m_recorder; // worker thread
    std::atomic<bool> m_ending{false};
    Lifeline<ModuleAudioRecorder> m_lifeline{*this};
    QThreadPool m_worker; // one thread; last, so that nothing of the above goes before its jobs
};

} // namespace dorvane

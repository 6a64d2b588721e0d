// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"

#include <QMutex>
#include <QString>
#include <QThreadPool>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace dorvane {

class SoundModule;

// Rings have threads of their own, so that nothing that hangs elsewhere keeps them waiting.
enum class SoundUse { Ring, Other };

// The module that decodes and plays sounds. Any thread.
class SoundModuleSource {
public:
    explicit SoundModuleSource(QString path);
    ~SoundModuleSource();
    SoundModuleSource(const SoundModuleSource&) = delete;
    SoundModuleSource& operator=(const SoundModuleSource&) = delete;

    // Brings the module into the process at the first call, which takes long. Null when it cannot
    // be loaded, with the reason in `error`; the next call tries again.
    [[nodiscard]] SoundModule* load(QString& error);

    // The module if it has been loaded; never waits for load().
    [[nodiscard]] SoundModule* module() const { return m_module; }

private:
    const QString m_path;
    QMutex m_loading;
    std::unique_ptr<SoundModule> m_owned;
    std::atomic<SoundModule*> m_module{nullptr};
};

// The threads on which sounds are read. A disk that does not answer holds on to a thread, and
// nothing gets it back: another takes its place then, and who wants the same file waits behind it
// without a thread. Main thread only.
class SoundLoader {
public:
    // How long a job may keep its thread before another takes its place.
    static constexpr std::chrono::seconds patience{3};

    // The loop must outlive the loader.
    SoundLoader(RunLoop& loop, const QString& modulePath);
    // Waits for the jobs that run, and ends the module's audio thread; but not for a disk that does
    // not answer.
    ~SoundLoader();
    SoundLoader(const SoundLoader&) = delete;
    SoundLoader& operator=(const SoundLoader&) = delete;

    // Runs `job`, which reads `file`, on a loading thread; jobs that have not started when the
    // loader is destroyed never run. One that runs may outlive the loader.
    void run(SoundUse use, const QString& file, std::function<void()> job);

    // For jobs; shared with those that outlive the loader.
    [[nodiscard]] const std::shared_ptr<SoundModuleSource>& source() const { return m_source; }
    [[nodiscard]] SoundModule* module() const { return m_source->module(); }

private:
    struct Threads {
        std::unique_ptr<QThreadPool> pool;
        int replaced = 0; // that are stuck and have another in their place
    };
    struct Job {
        SoundUse use;
        QString file;
        RunLoopTimer patience = {};
        bool isStuck = false;
        bool isReplaced = false;
        std::vector<std::function<void()>> behind = {}; // that want the same file
    };
    using Number = std::uint64_t;

    [[nodiscard]] Threads& threadsFor(SoundUse use) { return m_threads[std::size_t(use)]; }
    void begun(Number number);
    void stuck(Number number);
    void ended(Number number);

    RunLoop& m_loop;
    const std::shared_ptr<SoundModuleSource> m_source;
    std::array<Threads, 2> m_threads;
    std::map<Number, Job> m_jobs; // that were handed to a thread and have not ended
    Number m_lastJob = 0;
    Lifeline<SoundLoader> m_lifeline{*this};
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace dorvane {

class SoundModule;

// Rings have threads of their own, so that nothing that hangs elsewhere keeps them waiting.
enum class SoundUse { Ring, Other };

// The threads on which sounds are read, and the module that decodes and plays them. Members may be
// called on any thread; made and destroyed on the main thread.
class SoundLoader {
public:
    explicit SoundLoader(QString modulePath);
    // Waits for the jobs that run, and ends the module's audio thread.
    ~SoundLoader();
    SoundLoader(const SoundLoader&) = delete;
    SoundLoader& operator=(const SoundLoader&) = delete;

    // Runs `job` on a loading thread; jobs that have not started when the loader is destroyed
    // never run.
    void run(SoundUse use, std::function<void()> job);

    // Brings the module into the process at the first call, which takes long. Null when it cannot
    // be loaded, with the reason in `error`; the next call tries again.
    [[nodiscard]] SoundModule* load(QString& error);

    // The module if it has been loaded; never waits for load().
    [[nodiscard]] SoundModule* module() const;

private:
    const QString m_modulePath;
    QMutex m_loading;
    std::unique_ptr<SoundModule> m_owned;
    std::atomic<SoundModule*> m_module{nullptr};
    QThreadPool m_ringThreads;
    QThreadPool m_otherThreads;
};

} // namespace dorvane

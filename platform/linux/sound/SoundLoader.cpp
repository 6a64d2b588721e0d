// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundLoader.h"

#include "platform/linux/sound/SoundModule.h"
#include "platform/Log.h"

#include <QLibrary>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

constexpr int threadsOfAKind = 3;
// So many dead disks at once, or files on one, before rings wait for each other after all.
constexpr int mostReplaced = 12;
constexpr int longestFarewell = 2000; // milliseconds

} // namespace

SoundModuleSource::SoundModuleSource(QString path) : m_path(std::move(path)) {}

SoundModuleSource::~SoundModuleSource() = default;

SoundModule* SoundModuleSource::load(QString& error) {
    const QMutexLocker lock(&m_loading);
    if (!m_owned) {
        // Never unloaded: sounds and threads of its making may outlive any moment to do so.
        QLibrary library(m_path);
        const auto entry =
            reinterpret_cast<SoundModuleEntry>(library.resolve(soundModuleEntryName));
        if (!entry) {
            error = library.errorString();
            return nullptr;
        }
        m_owned.reset(entry());
        m_module = m_owned.get();
    }
    return m_owned.get();
}

SoundLoader::SoundLoader(RunLoop& loop, const QString& modulePath)
    : m_loop(loop), m_source(std::make_shared<SoundModuleSource>(modulePath)) {
    for (Threads& threads : m_threads) {
        threads.pool = std::make_unique<QThreadPool>();
        threads.pool->setMaxThreadCount(threadsOfAKind);
        threads.pool->setObjectName(QStringLiteral("sound loader"));
    }
}

SoundLoader::~SoundLoader() {
    for (Threads& threads : m_threads) {
        threads.pool->clear();
        if (!threads.pool->waitForDone(longestFarewell))
            (void)threads.pool.release(); // its end would wait for ever
    }
}

void SoundLoader::run(SoundUse use, const QString& file, std::function<void()> job) {
    for (auto& [number, other] : m_jobs)
        if (other.isStuck && other.use == use && other.file == file) {
            other.behind.push_back(std::move(job));
            return;
        }
    const Number number = ++m_lastJob;
    m_jobs.emplace(number, Job{.use = use, .file = file});
    const auto tell = [&loop = m_loop, self = m_lifeline.weak(),
                       number](void (SoundLoader::*what)(Number)) {
        if (self.isCut())
            return; // the loop may be gone, too
        loop.post([self, number, what] {
            if (SoundLoader* const loader = self.get())
                (loader->*what)(number);
        });
    };
    threadsFor(use).pool->start([tell, job = std::move(job)] {
        tell(&SoundLoader::begun);
        job();
        tell(&SoundLoader::ended);
    });
}

void SoundLoader::begun(Number number) {
    m_jobs.at(number).patience = m_loop.scheduleOnce(
        patience, [this, number] { stuck(number); }, RunLoopMode::Common);
}

void SoundLoader::stuck(Number number) {
    Job& job = m_jobs.at(number);
    Threads& threads = threadsFor(job.use);
    job.isStuck = true;
    job.isReplaced = threads.replaced < mostReplaced;
    if (job.isReplaced) {
        ++threads.replaced;
        threads.pool->releaseThread();
    }
    qCWarning(logPlatform).noquote()
        << job.file << "keeps a thread waiting;"
        << (job.isReplaced ? "another takes its place" : "too many do already");
}

void SoundLoader::ended(Number number) {
    const Job job = std::move(m_jobs.extract(number).mapped());
    Threads& threads = threadsFor(job.use);
    if (job.isReplaced) {
        threads.pool->reserveThread();
        --threads.replaced;
    }
    for (const auto& waiting : job.behind)
        run(job.use, job.file, waiting);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundLoader.h"

#include "platform/linux/sound/SoundModule.h"

#include <QLibrary>

#include <utility>

namespace dorvane {

namespace {

constexpr int threadsOfAKind = 3;

} // namespace

SoundLoader::SoundLoader(QString modulePath) : m_modulePath(std::move(modulePath)) {
    m_ringThreads.setMaxThreadCount(threadsOfAKind);
    m_ringThreads.setObjectName(QStringLiteral("ring loader"));
    m_otherThreads.setMaxThreadCount(threadsOfAKind);
    m_otherThreads.setObjectName(QStringLiteral("sound loader"));
}

SoundLoader::~SoundLoader() {
    for (QThreadPool* threads : {&m_ringThreads, &m_otherThreads}) {
        threads->clear();
        threads->waitForDone();
    }
}

void SoundLoader::run(SoundUse use, std::function<void()> job) {
    (use == SoundUse::Ring ? m_ringThreads : m_otherThreads).start(std::move(job));
}

SoundModule* SoundLoader::load(QString& error) {
    const QMutexLocker lock(&m_loading);
    if (!m_owned) {
        // Never unloaded: sounds and threads of its making may outlive any moment to do so.
        QLibrary library(m_modulePath);
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

SoundModule* SoundLoader::module() const {
    return m_module;
}

} // namespace dorvane

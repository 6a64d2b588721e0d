// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundLoader.h"

#include "platform/linux/sound/SoundModule.h"

#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include <utility>

namespace dorvane {

namespace {

// One may be busy with a file of many hours while an alarm wants to ring.
constexpr int loadingThreads = 4;

} // namespace

SoundLoader::SoundLoader(QString modulePath) : m_modulePath(std::move(modulePath)) {
    m_threads.setMaxThreadCount(loadingThreads);
    m_threads.setObjectName(QStringLiteral("sound loader"));
}

SoundLoader::~SoundLoader() {
    m_threads.clear();
    m_threads.waitForDone();
}

void SoundLoader::run(std::function<void()> job) {
    m_threads.start(std::move(job));
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

QByteArray SoundLoader::contents(const QString& path, QString& error) {
    // A pipe or a device would be waited for.
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        error = QStringLiteral("not a regular file");
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        error = file.errorString();
        return {};
    }
    QByteArray bytes = file.readAll();
    if (bytes.isEmpty())
        error = file.error() == QFileDevice::NoError ? QStringLiteral("the file is empty")
                                                     : file.errorString();
    return bytes;
}

} // namespace dorvane

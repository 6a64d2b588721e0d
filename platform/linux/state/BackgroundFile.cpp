// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/state/BackgroundFile.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/linux/state/OwnFolder.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace dorvane {

BackgroundFile::BackgroundFile(QString path, const RunLoop& runLoop)
    : m_path(std::move(path)), m_runLoop(runLoop) {
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(0);
}

BackgroundFile::~BackgroundFile() {
    flush();
}

std::optional<QByteArray> BackgroundFile::read() {
    removeUnfinishedWrites(m_path, m_runLoop.now());
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return file.exists() ? std::nullopt : std::optional(QByteArray());
    const QByteArray contents = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(contents) : std::nullopt;
}

void BackgroundFile::write(Contents contents) {
    const QMutexLocker lock(&m_mutex);
    if (!std::exchange(m_next, std::move(contents)))
        m_thread.start([this] { writeNext(); });
}

void BackgroundFile::flush() {
    m_thread.waitForDone();
}

void BackgroundFile::writeNext() {
    const Contents make = [this] {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_next, {});
    }();
    const QByteArray contents = make();
    if (contents.isEmpty() || contents == m_written)
        return;
    makeOwnFolder(QFileInfo(m_path).path());
    const auto error = writeFileAtomically(m_path, contents);
    if (error && !m_isFailing)
        qCWarning(logPlatform).noquote() << "cannot write" << m_path << *error;
    m_isFailing = error.has_value();
    m_written = error ? QByteArray() : contents;
}

bool BackgroundFile::putAside() {
    const QString name =
        QStringLiteral("%1.damaged-%2")
            .arg(m_path, m_runLoop.now().toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss-zzz")));
    QFile file(m_path);
    if (!file.rename(name)) {
        qCWarning(logPlatform).noquote() << "cannot put aside" << m_path << file.errorString();
        return false;
    }
    qCWarning(logPlatform).noquote() << "cannot be understood and was put aside:" << name;
    return true;
}

} // namespace dorvane

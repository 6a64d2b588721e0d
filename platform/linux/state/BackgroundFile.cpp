// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/state/BackgroundFile.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/linux/state/OwnFolder.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace dorvane {

BackgroundFile::BackgroundFile(QString path, RunLoop& runLoop)
    : m_path(std::move(path)), m_runLoop(runLoop) {}

std::optional<QByteArray> BackgroundFile::read() {
    removeUnfinishedWrites(m_path, m_runLoop.now());
    const PlainFile file = PlainFile::read(m_path);
    if (file.isAbsent())
        return QByteArray();
    return file.error.isEmpty() ? std::optional(file.contents) : std::nullopt;
}

void BackgroundFile::write(Contents contents, Written written) {
    if (written) {
        const QMutexLocker lock(&m_mutex);
        m_waiting.push_back(std::move(written));
    }
    m_thread.run([this, make = std::move(contents)] { writeNow(make); });
}

void BackgroundFile::flush() {
    m_thread.finish();
}

void BackgroundFile::writeNow(const Contents& make) {
    // Whoever comes to wait from here on waits for the next job.
    const auto waiting = [this] {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_waiting, {});
    }();
    const auto problem = replace(make());
    if (!waiting.empty())
        m_runLoop.post([waiting, problem] {
            for (const Written& written : waiting)
                written(problem);
        });
}

std::optional<QString> BackgroundFile::replace(const QByteArray& contents) {
    if (contents.isEmpty())
        return QStringLiteral("out of memory");
    if (contents == m_written)
        return std::nullopt;
    makeOwnFolder(QFileInfo(m_path).path()); // if that fails, writing says why
    auto error = writeFileAtomically(m_path, contents);
    if (error && !m_isFailing)
        qCWarning(logPlatform).noquote() << "cannot write" << m_path << *error;
    m_isFailing = error.has_value();
    m_written = error ? QByteArray() : contents;
    return error;
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

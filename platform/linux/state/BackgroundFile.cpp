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
    m_written = file.contents;
    const QMutexLocker lock(&m_mutex);
    m_known = file.stamp;
    return file.error.isEmpty() ? std::optional(file.contents) : std::nullopt;
}

void BackgroundFile::write(Contents contents, Written written) {
    m_last = contents;
    if (written) {
        const QMutexLocker lock(&m_mutex);
        m_waiting.push_back(std::move(written));
    }
    m_thread.run([this, make = std::move(contents)] { writeNow(make); });
}

// As what was written last, whose place it takes where that has not begun.
void BackgroundFile::lookAgain(std::function<void()> looked) {
    write(m_last, [looked = std::move(looked)](const auto&) { looked(); });
}

void BackgroundFile::flush() {
    m_thread.finish();
}

void BackgroundFile::writeNow(const Contents& make) {
    if (holdsBack())
        return; // whoever is told writes anew
    // Whoever comes to wait from here on waits for the next job.
    const auto waiting = [this] {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_waiting, {});
    }();
    const auto problem = make ? replace(make()) : std::nullopt;
    if (!waiting.empty())
        m_runLoop.post([waiting, problem] {
            for (const Written& written : waiting)
                written(problem);
        });
}

std::optional<QString> BackgroundFile::replace(const QByteArray& contents) {
    if (contents.isEmpty())
        return QStringLiteral("out of memory");
    if (contents == m_written && PlainFile::look(m_path).stamp)
        return std::nullopt;
    makeOwnFolder(QFileInfo(m_path).path()); // if that fails, writing says why
    auto error = writeFileAtomically(m_path, contents);
    if (error && !m_isFailing)
        qCWarning(logPlatform).noquote() << "cannot write" << m_path << *error;
    m_isFailing = error.has_value();
    m_written = error ? QByteArray() : contents;
    const QMutexLocker lock(&m_mutex);
    m_known = PlainFile::look(m_path).stamp;
    return error;
}

bool BackgroundFile::isKnown(const PlainFile::Stamp& stamp) {
    const QMutexLocker lock(&m_mutex);
    return m_isFound || m_known == stamp;
}

// Whether there is a file that somebody has to be told of before it may be replaced. Ours may only
// have been touched, or be dated by a server.
bool BackgroundFile::holdsBack() {
    if (!m_found)
        return false;
    const auto stamp = PlainFile::look(m_path).stamp;
    const PlainFile file = stamp && !isKnown(*stamp) ? PlainFile::read(m_path) : PlainFile();
    const QMutexLocker lock(&m_mutex);
    if (!file.isAbsent() && file.contents != m_written) {
        m_isFound = true;
        m_runLoop.post([weak = m_lifeline.weak(), file] {
            if (BackgroundFile* const self = weak.get())
                self->tellOfFound(file);
        });
        m_written.clear();
    } else if (file.stamp) {
        m_known = file.stamp;
    }
    return m_isFound;
}

void BackgroundFile::tellOfFound(const PlainFile& file) {
    {
        const QMutexLocker lock(&m_mutex);
        m_isFound = false;
        m_known = file.stamp;
    }
    m_found(file.error.isEmpty() ? std::optional(file.contents) : std::nullopt);
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/AnnouncedFile.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/Log.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

AnnouncedFile::AnnouncedFile(QString path) : m_path(std::move(path)) {}

AnnouncedFile::~AnnouncedFile() {
    if (m_lock >= 0)
        ::close(m_lock);
}

bool AnnouncedFile::acquire() {
    if (m_lock >= 0)
        return true;
    const QByteArray path = QFile::encodeName(m_path + QStringLiteral(".lock"));
    m_lock = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return true;
    ::close(std::exchange(m_lock, -1));
    return false;
}

QByteArray AnnouncedFile::read() const {
    return PlainFile::read(m_path).contents;
}

void AnnouncedFile::write(const QByteArray& contents) const {
    if (const auto error = writeFileAtomically(m_path, contents))
        qCWarning(logPlatform).noquote() << "cannot write" << m_path << *error;
}

} // namespace dorvane

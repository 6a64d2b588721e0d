// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/AtomicFile.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvane {

namespace {

// As mkostemp wants it, and as nobody calls a copy of his own, which would be removed.
constexpr auto nameEnding = ".unfinished-XXXXXX";

// QSaveFile does the first half of this, but it goes on when syncing fails and does not sync the
// folder, so that after a power cut the old file may be back although commit() said yes.

QString errorOf(const char* step) {
    const int code = errno;
    return QStringLiteral("%1: %2").arg(QLatin1String(step), qt_error_string(code));
}

class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (isOpen())
            ::close(m_descriptor);
    }
    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// A new file next to the one that is to be replaced; goes again unless it took that one's place.
class Replacement {
public:
    explicit Replacement(const QByteArray& target)
        : m_target(target)
        , m_name(target + nameEnding)
        , m_file(::mkostemp(m_name.data(), O_CLOEXEC)) {}
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement() {
        if (m_file.isOpen() && !m_isInPlace)
            ::unlink(m_name.constData());
    }

    [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }

    [[nodiscard]] bool takePermissionsOfTarget() const {
        struct stat status {};
        if (::stat(m_target.constData(), &status) != 0)
            return errno == ENOENT; // mkostemp has made it 0600
        return ::fchmod(m_file.get(), status.st_mode & 07777) == 0;
    }

    [[nodiscard]] bool write(QByteArrayView contents) const {
        while (!contents.isEmpty()) {
            const ssize_t written =
                ::write(m_file.get(), contents.data(), static_cast<size_t>(contents.size()));
            if (written < 0 && errno != EINTR)
                return false;
            contents = contents.sliced(std::max<ssize_t>(written, 0));
        }
        return true;
    }

    [[nodiscard]] bool sync() const { return ::fsync(m_file.get()) == 0; }

    [[nodiscard]] bool moveIntoPlace() {
        m_isInPlace = ::rename(m_name.constData(), m_target.constData()) == 0;
        return m_isInPlace;
    }

private:
    QByteArray m_target;
    QByteArray m_name;
    Descriptor m_file;
    bool m_isInPlace = false;
};

// Some file systems cannot sync a folder and say so with EINVAL; there is nothing to be done then.
bool syncFolder(const QString& folder) {
    const Descriptor descriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.isOpen() && (::fsync(descriptor.get()) == 0 || errno == EINVAL);
}

} // namespace

QString pathBehindLinks(const QString& path) {
    constexpr int mostLinks = 40; // as many as the system itself follows
    QString behind = path;
    for (int i = 0; i < mostLinks; ++i) {
        const QFileInfo info(behind);
        if (!info.isSymLink())
            return behind;
        behind = info.symLinkTarget();
    }
    return path; // a circle; opening it will fail
}

std::optional<QString> writeFileAtomically(const QString& path, QByteArrayView contents) {
    const QString target = pathBehindLinks(path);
    Replacement file(QFile::encodeName(target));
    if (!file.isOpen())
        return errorOf("cannot create a file in the folder");
    if (!file.takePermissionsOfTarget())
        return errorOf("cannot keep the permissions");
    if (!file.write(contents))
        return errorOf("cannot write");
    if (!file.sync())
        return errorOf("cannot sync the file");
    if (!file.moveIntoPlace())
        return errorOf("cannot replace the file");
    if (!syncFolder(QFileInfo(target).absolutePath()))
        return errorOf("cannot sync the folder");
    return std::nullopt;
}

void removeUnfinishedWrites(const QString& path, const QDateTime& now) {
    const QFileInfo target(pathBehindLinks(path));
    const QString name = target.fileName() + QLatin1String(nameEnding);
    const QString start = name.chopped(6); // without what is random
    const QDateTime longAgo = now.addSecs(-3600);
    // By hand: a filter would be a regular expression, and bring half a mebibyte of its library in.
    QDirIterator files(target.absolutePath(), QDir::Files | QDir::NoSymLinks);
    while (files.hasNext()) {
        files.next();
        const QString found = files.fileName();
        if (found.size() == name.size() && found.startsWith(start) &&
            files.fileInfo().lastModified() < longAgo)
            QFile::remove(files.filePath());
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

namespace {

// Rings are shorter, so that no disk is waited for while one plays.
constexpr std::int64_t heldSize = 2 * 1024 * 1024;

} // namespace

SoundFile::SoundFile(QByteArray contents)
    : m_contents(std::move(contents)), m_size(m_contents.size()) {}

SoundFile::~SoundFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::shared_ptr<const SoundInput> SoundFile::open(const QString& path, QString& error) {
    // A pipe would be waited for.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) < 0) {
        error = qt_error_string(errno);
        if (descriptor >= 0)
            ::close(descriptor);
        return nullptr;
    }
    std::shared_ptr<const SoundFile> file(new SoundFile(descriptor, status.st_size));
    if (!S_ISREG(status.st_mode))
        error = QStringLiteral("not a regular file");
    else if (status.st_size == 0)
        error = QStringLiteral("the file is empty");
    if (!error.isEmpty())
        return nullptr;
    if (status.st_size <= heldSize)
        return std::make_shared<SoundFile>(file->wholeContents());
    (void)::posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    return file;
}

QByteArray SoundFile::wholeContents() const {
    QByteArray contents(m_size, Qt::Uninitialized);
    std::int64_t got = 0;
    while (const std::int64_t count =
               std::max<std::int64_t>(read(got, contents.data() + got, m_size - got), 0))
        got += count;
    contents.truncate(got); // somebody cut it off meanwhile
    return contents;
}

std::int64_t SoundFile::read(std::int64_t position, void* out, std::int64_t count) const {
    count = std::min(count, m_size - position);
    if (count <= 0)
        return 0;
    if (m_descriptor >= 0)
        return ::pread(m_descriptor, out, static_cast<std::size_t>(count), position);
    std::memcpy(out, m_contents.constData() + position, static_cast<std::size_t>(count));
    return count;
}

} // namespace dorvane

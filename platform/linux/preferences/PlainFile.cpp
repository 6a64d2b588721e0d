// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PlainFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvane {

namespace {

PlainFile unreadable(const QString& why) {
    return {.stamp = {}, .contents = {}, .error = why};
}

PlainFile judged(const struct stat& status) {
    if (!S_ISREG(status.st_mode))
        return unreadable(QStringLiteral("it is not a plain file"));
    if (status.st_size > PlainFile::mostBytes)
        return unreadable(QStringLiteral("it is too large"));
    return {.stamp = PlainFile::Stamp{status.st_dev, status.st_ino, status.st_size,
                                      status.st_mtim.tv_sec, status.st_mtim.tv_nsec},
            .contents = {},
            .error = {}};
}

} // namespace

PlainFile PlainFile::look(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0)
        return judged(status);
    return errno == ENOENT ? PlainFile() : unreadable(qt_error_string(errno));
}

PlainFile PlainFile::read(const QString& path) {
    PlainFile found = look(path);
    if (!found.stamp)
        return found;
    // Without waiting, for what may have taken its place since.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return unreadable(qt_error_string(errno));
    QFile file;
    struct stat status {};
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return unreadable(file.errorString());
    }
    if (::fstat(descriptor, &status) != 0)
        return unreadable(qt_error_string(errno));
    found = judged(status);
    if (!found.stamp)
        return found;
    found.contents = file.readAll();
    return file.error() == QFileDevice::NoError ? found : unreadable(file.errorString());
}

} // namespace dorvane

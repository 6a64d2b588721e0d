// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/relocate/BundleCopy.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvane {

namespace {

namespace fs = std::filesystem;

using Error = std::optional<QString>;

constexpr fs::perms anybody =
    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
constexpr fs::perms starts = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;

fs::path native(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

QString text(const fs::path& path) {
    return QFile::decodeName(path.c_str());
}

Error failure(const fs::path& path, const QString& reason) {
    return text(path) + QStringLiteral(": ") + reason;
}

Error failure(const fs::path& path, const std::error_code& code) {
    if (!code)
        return std::nullopt;
    return failure(path, QString::fromLocal8Bit(code.message().c_str()));
}

bool isStarted(const fs::file_status& status) {
    return (status.permissions() & fs::perms::owner_exec) != fs::perms::none;
}

bool haveEqualBytes(const fs::path& path, const fs::path& other) {
    QFile a(text(path));
    QFile b(text(other));
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly) || a.size() != b.size())
        return false;
    constexpr qint64 block = 1 << 16;
    while (!a.atEnd()) {
        const QByteArray bytes = a.read(block);
        if (bytes.isEmpty() || bytes != b.read(bytes.size()))
            return false;
    }
    return a.error() == QFile::NoError;
}

// Folders are alike when both are folders.
bool isAlike(const fs::path& path, const fs::path& other) {
    std::error_code code;
    const auto status = fs::symlink_status(path, code);
    const auto otherStatus = fs::symlink_status(other, code);
    if (status.type() != otherStatus.type())
        return false;
    if (fs::is_symlink(status))
        return fs::read_symlink(path, code) == fs::read_symlink(other, code) && !code;
    if (fs::is_regular_file(status))
        return isStarted(status) == isStarted(otherStatus) && haveEqualBytes(path, other);
    return fs::is_directory(status);
}

// Calls `visit(path, its place below the folder)` for the folder itself and all that is in it, a
// folder before what is in it, until the first error.
template<typename Visit>
Error walk(const fs::path& folder, Visit visit) {
    if (Error error = visit(folder, fs::path()))
        return error;
    std::error_code code;
    fs::recursive_directory_iterator entry(folder, code);
    for (; !code && entry != fs::recursive_directory_iterator(); entry.increment(code))
        if (Error error = visit(entry->path(), entry->path().lexically_relative(folder)))
            return error;
    return failure(folder, code);
}

fs::path below(const fs::path& folder, const fs::path& place) {
    return place.empty() ? folder : folder / place;
}

Error copyEntry(const fs::path& from, const fs::path& to) {
    std::error_code code;
    const auto status = fs::symlink_status(from, code);
    if (code)
        return failure(from, code);
    if (fs::is_symlink(status)) {
        fs::copy_symlink(from, to, code);
        return failure(to, code);
    }
    if (fs::is_directory(status)) {
        fs::create_directory(to, code);
        if (!code)
            fs::permissions(to, anybody | starts, code);
        return failure(to, code);
    }
    if (!fs::is_regular_file(status))
        return failure(from, QStringLiteral("neither a file nor a folder nor a link"));
    fs::copy_file(from, to, code);
    if (!code)
        fs::permissions(to, isStarted(status) ? anybody | starts : anybody, code);
    return failure(to, code);
}

Error differenceBetween(const fs::path& folder, const fs::path& other) {
    const auto look = [](const fs::path& in) {
        return [in](const fs::path& path, const fs::path& place) -> Error {
            if (isAlike(path, below(in, place)))
                return std::nullopt;
            return failure(path, QStringLiteral("the copy differs"));
        };
    };
    if (Error error = walk(folder, look(other)))
        return error;
    return walk(other, look(folder));
}

// Everything that was written to the file system, or the folder alone.
Error flush(const fs::path& folder, int (*how)(int)) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isDone = descriptor >= 0 && how(descriptor) == 0;
    const std::error_code code(isDone ? 0 : errno, std::generic_category());
    if (descriptor >= 0)
        ::close(descriptor);
    return failure(folder, code);
}

} // namespace

QString copyInProgress(const QString& destination) {
    const QFileInfo info(destination);
    return QStringLiteral("%1/.%2.moving").arg(info.path(), info.fileName());
}

Error copyFolder(const QString& source, const QString& copy) {
    const fs::path from = native(source);
    const fs::path to = native(copy);
    std::error_code code;
    fs::remove_all(to, code);
    Error error = failure(to, code);
    if (!error)
        error = walk(from, [&](const fs::path& path, const fs::path& place) {
            return copyEntry(path, below(to, place));
        });
    if (!error)
        error = differenceBetween(from, to);
    if (!error)
        error = flush(to, ::syncfs);
    if (error)
        fs::remove_all(to, code);
    return error;
}

Error renameFolder(const QString& path, const QString& newPath) {
    const fs::path to = native(newPath);
    if (::renameat2(AT_FDCWD, native(path).c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0)
        return failure(to, std::error_code(errno, std::generic_category()));
    return flush(to.parent_path(), ::fsync);
}

Error removeWhatIsIn(const QString& copy, const QString& source) {
    const fs::path from = native(source);
    const fs::path to = native(copy);
    std::vector<fs::path> found;
    Error error = walk(from, [&](const fs::path& path, const fs::path& place) -> Error {
        if (!isAlike(path, below(to, place)))
            return failure(path, QStringLiteral("it is not what was copied"));
        found.push_back(path);
        return std::nullopt;
    });
    std::error_code code;
    for (; !error && !found.empty(); found.pop_back()) {
        fs::remove(found.back(), code);
        error = failure(found.back(), code);
    }
    return error;
}

} // namespace dorvane

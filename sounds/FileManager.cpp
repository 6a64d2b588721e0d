// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/FileManager.h"

#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <unistd.h>

namespace dorvane {

namespace {

constexpr qint64 blockSize = 64 * 1024;

// An empty string when all of `source` is in `copy`, else what kept it from that.
[[nodiscard]] QString copyBytes(QFile& source, QFile& copy, const std::stop_token& stop) {
    while (true) {
        if (stop.stop_requested())
            return QStringLiteral("stopped");
        const QByteArray block = source.read(blockSize);
        if (source.error() != QFileDevice::NoError)
            return source.errorString();
        if (block.isEmpty())
            break;
        if (copy.write(block) != block.size())
            return copy.errorString();
    }
    return copy.flush() ? QString() : copy.errorString();
}

[[nodiscard]] QString nameIsTaken() {
    return QStringLiteral("the name is taken");
}

// An empty file is what a power cut can leave of a copy.
[[nodiscard]] bool holdsSomething(const QFileInfo& file) {
    return file.exists() && file.size() > 0;
}

[[nodiscard]] QString tryCopy(const QString& from, const QString& to, const std::stop_token& stop) {
    const QFileInfo present(to);
    if (holdsSomething(present))
        return nameIsTaken();
    if (!QFileInfo(from).isFile()) // reading from a pipe or a device might never end
        return QStringLiteral("there is no such file");
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return source.errorString();
    if (source.size() == 0)
        return QStringLiteral("there is nothing in it");

    // Has no name at all until it is renamed, where the file system can do that; elsewhere the dot
    // keeps it out of every listing. Renaming does not replace a file that came up meanwhile.
    QTemporaryFile copy(present.path() + QStringLiteral("/.XXXXXX.part"));
    if (!copy.open())
        return copy.errorString();
    if (QString problem = copyBytes(source, copy, stop); !problem.isEmpty())
        return problem;
    copy.setPermissions(source.permissions() | QFileDevice::WriteOwner);
    if (::fsync(copy.handle()) != 0)
        return qt_error_string(errno);
    if (present.exists())
        QFile::remove(to);
    if (!copy.rename(to))
        return copy.errorString();
    copy.setAutoRemove(false);
    return {};
}

using PutInPlace = std::function<QString(const QString& source, const QString& place)>;

[[nodiscard]] KeptFile keep(const QString& source, const QString& folder, const PutInPlace& put) {
    const QFileInfo original(source);
    if (!original.isFile()) // comparing would wait for a pipe, too
        return {{}, QStringLiteral("there is no such file")};
    QString name = original.fileName();
    while (name.startsWith(u'.') && name.size() > 1)
        name.remove(0, 1);
    const QString base = QFileInfo(name).completeBaseName();
    const QString suffix = name.mid(base.size());
    constexpr int mostNames = 1000;
    for (int i = 1; i <= mostNames; ++i) {
        const QString place =
            QDir(folder).filePath(i == 1 ? name : base + u'-' + QString::number(i) + suffix);
        const QFileInfo present(place);
        if (holdsSomething(present)) {
            if (present.isFile() && contentsEqual(source, place))
                return {place, {}};
            continue;
        }
        const QString problem = put(source, place);
        if (problem != nameIsTaken())
            return {problem.isEmpty() ? place : QString(), problem};
    }
    return {{}, nameIsTaken()};
}

// Empty when the file has the further name.
[[nodiscard]] QString linkItem(const QString& source, const QString& place) {
    if (QFileInfo(source).isSymLink())
        return QStringLiteral("it is a link");
    QFile::remove(place); // nothing, or an empty file
    const bool isLinked =
        ::link(QFile::encodeName(source).constData(), QFile::encodeName(place).constData()) == 0;
    return isLinked ? QString() : errno == EEXIST ? nameIsTaken() : qt_error_string(errno);
}

} // namespace

KeptFile keepCopy(const QString& source, const QString& folder, const std::stop_token& stop) {
    return keep(source, folder, [&](const QString& from, const QString& place) {
        return copyItem(from, place, stop);
    });
}

KeptFile keepFile(const QString& source, const QString& folder, const std::stop_token& stop) {
    return keep(source, folder, [&](const QString& from, const QString& place) {
        const QString problem = linkItem(from, place);
        return problem.isEmpty() || problem == nameIsTaken() ? problem
                                                             : copyItem(from, place, stop);
    });
}

void syncFolder(const QString& folder) {
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // Some file systems have no such thing, and say so with EINVAL.
    if (descriptor < 0 || (::fsync(descriptor) != 0 && errno != EINVAL))
        qCInfo(logSounds) << "cannot sync" << folder << qt_error_string(errno);
    if (descriptor >= 0)
        ::close(descriptor);
}

QString copyItem(const QString& source, const QString& destination, const std::stop_token& stop) {
    QString problem = tryCopy(source, destination, stop);
    if (problem.isEmpty())
        qCDebug(logSounds) << "copied" << source << "to" << destination;
    else
        qCInfo(logSounds).noquote()
            << "did not copy" << source << "to" << destination << ":" << problem;
    return problem;
}

bool contentsEqual(const QString& path, const QString& otherPath) {
    QFile file(path);
    QFile other(otherPath);
    if (!file.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly) ||
        file.size() != other.size())
        return false;
    while (!file.atEnd()) {
        const QByteArray block = file.read(blockSize);
        if (block.isEmpty() || block != other.read(blockSize))
            return false;
    }
    return true;
}

} // namespace dorvane

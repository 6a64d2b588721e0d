// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/FileManager.h"

#include "platform/Log.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

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

[[nodiscard]] QString tryCopy(const QString& from, const QString& to, const std::stop_token& stop) {
    const QFileInfo present(to);
    if (present.exists() && present.size() > 0)
        return QStringLiteral("the name is taken");
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
    if (present.exists())
        QFile::remove(to);
    if (!copy.rename(to))
        return copy.errorString();
    copy.setAutoRemove(false);
    return {};
}

} // namespace

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

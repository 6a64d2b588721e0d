// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/relocate/UnixRelocator.h"

#include "platform/linux/relocate/AuthorisedCopy.h"
#include "platform/linux/relocate/BundleCopy.h"
#include "platform/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QStorageInfo>

#include <utility>

namespace dorvane {

namespace {

QString programOf(const QString& bundlePath) {
    return bundlePath + QStringLiteral("/dorvane");
}

QString resolved(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

// One word of a shell's command line.
QString quoted(QString path) {
    return u'\'' + path.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

void runInShell(const QString& line) {
    if (!QProcess::startDetached(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line}))
        qCWarning(logRelocate).noquote() << "cannot run" << line;
}

} // namespace

UnixRelocator::UnixRelocator(UserFolders user, QString localApplications, QString pkexec)
    : m_user(std::move(user))
    , m_localApplications(std::move(localApplications))
    , m_pkexec(std::move(pkexec)) {}

Relocator::Folders UnixRelocator::folders() const {
    // Where a program runs from is known without links.
    const QString home = resolved(m_user.home);
    const QString destination = resolved(m_localApplications);
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return {.applications = {home + QStringLiteral("/Applications"),
                             home + QStringLiteral("/.local"), destination, QStringLiteral("/usr")},
            .destination = destination,
            .downloads = {home + QStringLiteral("/Downloads"), resolved(downloads)}};
}

bool UnixRelocator::exists(const QString& path) const {
    return QFileInfo::exists(path);
}

bool UnixRelocator::isWritable(const QString& path) const {
    return QFileInfo(path).isWritable();
}

// A loop device, or a partition of one, tells what it shows.
std::optional<QString> UnixRelocator::diskImageDevice(const QString& folder) const {
    const QStorageInfo volume(folder);
    const QString device = QString::fromLocal8Bit(volume.device());
    const QDir block(QStringLiteral("/sys/class/block/") + QFileInfo(device).fileName());
    const bool isImage = block.exists(QStringLiteral("loop/backing_file")) ||
                         QFileInfo::exists(QFileInfo(block.path()).canonicalFilePath() +
                                           QStringLiteral("/../loop/backing_file"));
    if (!volume.isValid() || volume.isRoot() || !device.startsWith(u'/') || !isImage)
        return std::nullopt;
    return device;
}

bool UnixRelocator::isRunning(const QString& bundlePath) const {
    const QString program = resolved(programOf(bundlePath));
    const QString own = QString::number(QCoreApplication::applicationPid());
    for (const QString& process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs))
        if (process.at(0).isDigit() && process != own &&
            QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process)) == program)
            return true;
    return false;
}

std::optional<QString> UnixRelocator::copyBeside(const QString& source,
                                                 const QString& destination) {
    return copyFolder(source, copyInProgress(destination));
}

std::optional<QString> UnixRelocator::putInPlace(const QString& destination) {
    auto error = renameFolder(copyInProgress(destination), destination);
    if (error)
        discardCopy(destination);
    return error;
}

void UnixRelocator::discardCopy(const QString& destination) {
    QDir(copyInProgress(destination)).removeRecursively();
}

Relocator::Authorised UnixRelocator::copyWithAuthorisation(const QString& source,
                                                           const QString& destination) {
    return copyAsRoot(source, destination, m_pkexec);
}

std::optional<QString> UnixRelocator::removeCopied(const QString& source, const QString& copy) {
    return removeWhatIsIn(copy, source);
}

bool UnixRelocator::moveToTrash(const QString& path) {
    // Without the folder, Qt moves the file to wherever this process was started.
    QDir().mkpath(m_user.data);
    QFile file(path);
    if (file.moveToTrash() && QDir::isAbsolutePath(file.fileName()))
        return true;
    if (QProcess::execute(QStringLiteral("gio"), {QStringLiteral("trash"), path}) == 0)
        return true;
    qCWarning(logRelocate).noquote() << QStringLiteral("ERROR -- Could not trash '%1'").arg(path);
    return false;
}

void UnixRelocator::open(const QString& bundlePath) {
    if (!QProcess::startDetached(programOf(bundlePath), {}))
        qCWarning(logRelocate).noquote() << "cannot start" << programOf(bundlePath);
}

void UnixRelocator::openAfterTheEnd(const QString& bundlePath) {
    runInShell(QStringLiteral("(while kill -0 %1 2>/dev/null; do sleep 0.1; done; exec %2) &")
                   .arg(QCoreApplication::applicationPid())
                   .arg(quoted(programOf(bundlePath))));
}

// As whoever attached it: the desktop for its user, or else root.
void UnixRelocator::detachSoon(const QString& device) {
    runInShell(
        QStringLiteral("(sleep 5 && { udisksctl unmount --block-device %1 || umount %1; } && "
                       "{ udisksctl loop-delete --block-device %1 || losetup --detach %1; }) "
                       ">/dev/null 2>&1 &")
            .arg(quoted(device)));
}

} // namespace dorvane

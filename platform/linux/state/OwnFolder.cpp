// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/state/OwnFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace dorvane {

void makeOwnFolder(const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), S_IRWXU) == 0)
        return;
    struct stat folder {};
    if (::stat(name.constData(), &folder) == 0 && S_ISDIR(folder.st_mode) &&
        (folder.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        ::chmod(name.constData(), S_IRWXU);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/folders/XdgFolders.h"

#include <QDir>
#include <QFile>

#include <pwd.h>
#include <unistd.h>

namespace dorvane {

namespace {

QString folderFrom(const char* variable, const QString& fallback) {
    const QString value = QFile::decodeName(qgetenv(variable));
    return QDir::cleanPath(QDir::isAbsolutePath(value) ? value : fallback);
}

QString homeOfAccount() {
    const passwd* account = ::getpwuid(::getuid());
    return account ? QFile::decodeName(account->pw_dir) : QStringLiteral("/");
}

} // namespace

UserFolders xdgFolders() {
    const QString home = folderFrom("HOME", homeOfAccount());
    return {.home = home,
            .caches = folderFrom("XDG_CACHE_HOME", home + QStringLiteral("/.cache")),
            .configuration = folderFrom("XDG_CONFIG_HOME", home + QStringLiteral("/.config")),
            .data = folderFrom("XDG_DATA_HOME", home + QStringLiteral("/.local/share")),
            .state = folderFrom("XDG_STATE_HOME", home + QStringLiteral("/.local/state"))};
}

} // namespace dorvane

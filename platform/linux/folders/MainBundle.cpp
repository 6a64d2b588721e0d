// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/folders/MainBundle.h"

#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QFile>
#include <QFileInfo>

namespace dorvane {

Bundle mainBundle(const PropertyListFormat& format) {
    // After an upgrade under the running program the link ends in " (deleted)"; its folder is
    // right nevertheless.
    const QString program = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return bundleWithPath(QFileInfo(program).path(), format);
}

Bundle bundleWithPath(const QString& path, const PropertyListFormat& format) {
    QFile file(path + QStringLiteral("/Info.plist"));
    if (!file.open(QIODevice::ReadOnly)) {
        qCCritical(logPlatform) << "cannot read" << file.fileName() << file.errorString();
        return {path, {}};
    }
    const auto root = format.parse(file.readAll());
    if (!root || root->typeId() != QMetaType::QVariantMap) {
        qCCritical(logPlatform) << file.fileName() << "is damaged";
        return {path, {}};
    }
    return {path, root->toMap()};
}

} // namespace dorvane

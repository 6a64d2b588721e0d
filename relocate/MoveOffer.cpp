// SPDX-License-Identifier: GPL-3.0-or-later
#include "relocate/MoveOffer.h"

#include "platform/Relocator.h"

#include <algorithm>

namespace dorvane {

namespace {

const auto suffix = QStringLiteral(".app");

bool isInside(const QString& path, const QStringList& folders) {
    return std::any_of(folders.begin(), folders.end(), [&](const QString& folder) {
        return path.startsWith(folder + QLatin1Char('/'));
    });
}

QString parentOf(const QString& path) {
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

bool isInAnotherBundle(const QString& path) {
    const QStringList components = parentOf(path).split(QLatin1Char('/'));
    return std::any_of(components.begin(), components.end(),
                       [](const QString& component) { return component.endsWith(suffix); });
}

bool isAmongPrograms(const QString& path, const QStringList& folders) {
    return isInside(path, folders) ||
           path.split(QLatin1Char('/')).contains(QStringLiteral("Applications"));
}

} // namespace

std::optional<MoveOffer> offerToMove(const QString& bundlePath, const Relocator& relocator) {
    const auto folders = relocator.folders();
    const bool isNested = isInAnotherBundle(bundlePath);
    if (!isNested && isAmongPrograms(bundlePath, folders.applications))
        return std::nullopt;
    // A program that was taken out of its bundle would take the whole folder along.
    const bool isBundle =
        bundlePath.endsWith(suffix) && relocator.exists(bundlePath + QStringLiteral("/Info.plist"));
    if (!isBundle || relocator.exists(parentOf(bundlePath) + QStringLiteral("/CMakeCache.txt")))
        return std::nullopt;

    const QString destination =
        folders.destination + bundlePath.mid(bundlePath.lastIndexOf(QLatin1Char('/')));
    const bool isProtected = relocator.exists(destination) && !relocator.isWritable(destination);
    return MoveOffer{.source = bundlePath,
                     .destination = destination,
                     .isNested = isNested,
                     .needsAuthorisation =
                         isProtected || !relocator.isWritable(folders.destination),
                     .isDownload = isInside(bundlePath, folders.downloads),
                     .diskImageDevice = relocator.diskImageDevice(bundlePath)};
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace dorvane {

class Relocator;

// What is decided about a bundle before anybody is asked.
struct MoveOffer {
    QString source;
    QString destination;
    bool isNested = false; // inside another application's bundle
    bool needsAuthorisation = false;
    bool isDownload = false;
    std::optional<QString> diskImageDevice;
};

// Nothing when the bundle is where programs live, or in the build folder it was made in, or is no
// bundle. Looks at the disk only where it has to.
[[nodiscard]] std::optional<MoveOffer> offerToMove(const QString& bundlePath,
                                                   const Relocator& relocator);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateFeed.h"
#include "tests/fuzz/FuzzSupport.h"

using namespace dorvane;
using dorvane::testing::require;

// Whatever a server sends, a release has a version that can be compared and a page on a server;
// what is none has a reason that can be shown.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QString reason;
    const auto release = releaseInFeed(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)), reason);
    require(release.has_value() == reason.isEmpty());
    if (!release)
        return 0;
    require(release->link.scheme() == QStringLiteral("https") && !release->link.host().isEmpty());
    require(release->link.userInfo().isEmpty() && isFeedAddress(release->link));
    require(!isNewer(release->version, release->version));
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/DocumentFetcher.h"

#include <QUrl>

namespace dorvane {

// What the loadable module gives: documents of https: addresses.
class NetworkModule {
public:
    virtual ~NetworkModule() = default;

    // Waits for the answer, half a minute and a little more at most. Follows redirections to https:
    // addresses only, and gives up on a document that is longer than any may be. Any thread.
    [[nodiscard]] virtual DocumentFetcher::Answer get(const QUrl& url) const = 0;
};

// The module's one entry point, a function of this type and name. The caller owns the result.
using NetworkModuleEntry = NetworkModule* (*)();
inline constexpr const char* networkModuleEntryName = "dorvaneNetworkModule";

} // namespace dorvane

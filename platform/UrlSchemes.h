// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace dorvane {

// Which program the desktop opens addresses of a scheme with. Nothing here waits; main thread only.
class UrlSchemes {
public:
    struct Handler {
        int status = 0; // not 0: there is none, or it cannot be told
        QString bundlePath;
    };

    virtual ~UrlSchemes() = default;

    // Calls back later, once.
    virtual void applicationForScheme(const QString& scheme,
                                      std::function<void(const Handler&)> answer) = 0;

    // Makes the program of the bundle the one that opens the scheme. Failures are logged.
    virtual void registerBundle(const QString& bundlePath, const QString& scheme) = 0;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace dorvane::testing {

// Collects log messages while it lives, as "category: text". A warning that no capture is there
// for fails the running test, whoever logged it. Captures do not nest.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    [[nodiscard]] QStringList messages() const;

    // Sends every message of the process through the capture; called once by main().
    static void install();
};

} // namespace dorvane::testing

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>

#include <gtest/gtest.h>

namespace dorvane::testing {

// Runs a command to its end, which must be a success, and gives what it printed. Spaces divide its
// arguments but within double quotes.
inline QString run(const QString& command) {
    QProcess process;
    process.startCommand(command);
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << qPrintable(command);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace dorvane::testing

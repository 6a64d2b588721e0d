// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace dorvane {

// A short report of a fault of the program: what ended it, and where the program was then. It stays
// on this computer.

// From now on a fault leaves a report in the folder, which is made when it is missing; the process
// dies of its signal all the same, and a core is dumped as the system is set up to. Once, from
// main(). `version` is that of the program.
void reportCrashes(const QString& folder, const char* version);

// The path of the report that an earlier run left; each is given out once. Nothing when there is
// none. The last ten are kept.
[[nodiscard]] std::optional<QString> takeCrashReport(const QString& folder);

} // namespace dorvane

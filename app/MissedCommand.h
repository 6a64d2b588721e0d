// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace dorvane {

// `dorvane missed`: prints what was missed in the last month, from the journal, whether the program
// runs or not.
[[nodiscard]] ExitStatus runMissed(const QCommandLineParser& parser);

} // namespace dorvane

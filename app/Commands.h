// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace dorvane {

// Everything that can be asked for on the command line without starting the program itself, in the
// order in which --help lists it.
[[nodiscard]] const std::vector<Command>& commands();

} // namespace dorvane

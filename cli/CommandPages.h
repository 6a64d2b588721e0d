// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace dorvane {

// What the pages of the project tell of the commands and of the methods on the bus, made from their
// tables: functions on values.

// For the man page, in mdoc: the forms of the synopsis, and the list of what each does.
[[nodiscard]] QString manSynopsis(const std::vector<Command>& table);
[[nodiscard]] QString manCommands(const std::vector<Command>& table);

// For the manual: an example of each beside what it does, in HTML.
[[nodiscard]] QString manualCommands(const std::vector<Command>& table);

// For docs/bus.md: its table of methods.
[[nodiscard]] QString busMethods();

// The page with the text in the place of all between the line that has "[NAME" and the next that
// has "NAME]"; null where it has no such lines.
[[nodiscard]] QString withPart(const QString& page, const QString& name, const QString& text);

} // namespace dorvane

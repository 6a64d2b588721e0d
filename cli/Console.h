// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A line for the standard output, in the encoding of the user's locale. False when nobody reads
// it any more.
bool writeLine(const QString& line);

// A line for the standard error, with the program's name before it.
void writeFault(const QString& line);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A line for the standard output, in the encoding of the user's locale, and always one line: what
// in it would steer a terminal is replaced. False when nobody reads it any more.
bool writeLine(const QString& line);
// The same for a text of several lines.
bool writeText(const QString& text);

// Whether it would stand in a line as it is.
[[nodiscard]] bool isPrinted(const QString& text);

// As writeLine() for the standard error, with the program's name before it.
void writeFault(const QString& line);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A recording's file is named after its reminder. What a name cannot hold is written as a percent
// sign and two hexadecimal digits for each byte, so that the text can be read back from the name.

// The file name, without extension, for any text: no part of a path, never hidden, never empty, and
// 200 bytes at most. Longer names are cut and end in a number made from the whole text.
[[nodiscard]] QString reminderFileName(const QString& text);

// The text for a file name without extension; a text that was cut ends in "…". Names that were not
// made by reminderFileName() are texts as they are.
[[nodiscard]] QString reminderText(const QString& fileName);

} // namespace dorvane

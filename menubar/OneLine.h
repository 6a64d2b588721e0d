// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A user's text made fit for one line: line breaks, tabs and other control characters become
// blanks, and of more than `most` characters (UTF-16 units) the rest gives way to "...".
[[nodiscard]] QString oneLine(const QString& text, int most);

// The first `count` characters (UTF-16 units) of a text, or fewer rather than half an emoji or a
// letter without its accent.
[[nodiscard]] QString wholeCharacters(const QString& text, qsizetype count);

} // namespace dorvane

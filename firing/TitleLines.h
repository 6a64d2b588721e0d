// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>

namespace dorvane {

// A title of any length and script in a few lines of at most `width` device-independent pixels:
// broken between words, and inside a word that is longer than a line. What does not fit gives way
// to "…".
struct TitleLines {
    QString text; // the lines, with line breaks between them
    bool isCut = false;
};
[[nodiscard]] TitleLines titleLines(const QString& title, const QFont& font, int width,
                                    int mostLines);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A text for setToolTip() and setInformativeText(), shown there as it stands and wrapped where it
// is long. They read what looks like rich text as such, and would open whatever files its pictures
// name, on the main thread. Empty for an empty text.
[[nodiscard]] inline QString escapedText(const QString& text) {
    constexpr qsizetype longest = 1000;
    if (text.isEmpty())
        return {};
    return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>")
        .arg(text.left(longest).toHtmlEscaped());
}

} // namespace dorvane

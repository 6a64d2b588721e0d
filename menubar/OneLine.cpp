// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/OneLine.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace dorvane {

QString wholeCharacters(const QString& text, qsizetype count) {
    if (count >= text.size())
        return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(std::max<qsizetype>(count, 0));
    if (!finder.isAtBoundary())
        finder.toPreviousBoundary();
    return text.left(finder.position());
}

QString oneLine(const QString& text, int most) {
    QString line = wholeCharacters(text, most);
    const bool cut = line.size() < text.size();
    for (QChar& character : line) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = u' ';
    }
    return cut ? line + QStringLiteral("...") : line;
}

} // namespace dorvane

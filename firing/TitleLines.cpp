// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TitleLines.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>

namespace dorvane {

TitleLines titleLines(const QString& title, const QFont& font, int width, int mostLines) {
    constexpr qsizetype mostCharacters = 1000; // more than any few lines hold
    const QString whole = title.simplified();
    const QString text = whole.left(mostCharacters);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    int begin = 0;
    while (lines.size() < mostLines) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        begin = line.textStart();
        lines << text.mid(begin, line.textLength()).trimmed();
    }
    layout.endLayout();
    if (lines.isEmpty())
        return {};
    const QString last = whole.mid(begin, mostCharacters);
    const bool isCut = last.trimmed() != lines.last();
    if (isCut)
        lines.last() = QFontMetrics(font).elidedText(last, Qt::ElideRight, width);
    return {lines.join(u'\n'), isCut};
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/CountdownLabel.h"

#include <QPainter>
#include <QRegularExpression>

namespace dorvane {

namespace {

constexpr double timeSize = 5.5; // in sizes of the window's type
constexpr double wordSize = 1.4;
constexpr int gap = 4;

QFont scaled(QFont font, double factor) {
    font.setPointSizeF(font.pointSizeF() * factor);
    return font;
}

} // namespace

CountdownLabel::CountdownLabel(QWidget* parent) : QLabel(parent) {}

QFont CountdownLabel::timeFont() const {
    QFont large = scaled(font(), timeSize);
    large.setWeight(QFont::Light);
    return large;
}

QFont CountdownLabel::wordFont() const {
    return scaled(font(), wordSize);
}

QSize CountdownLabel::sizeHint() const {
    const int width = QFontMetrics(timeFont()).horizontalAdvance(QStringLiteral("000:00"));
    const int words = QFontMetrics(wordFont()).height();
    return {width * 3 / 2, QFontMetrics(timeFont()).height() + 2 * (words + gap)};
}

void CountdownLabel::paintEvent(QPaintEvent* /*event*/) {
    static const QRegularExpression timeInWords(QStringLiteral("^(.*?)(\\d+:\\d+)(.*)$"));
    const QRegularExpressionMatch match = timeInWords.match(text());
    QPainter painter(this);
    // The label counts as switched off, as nothing can be done with it, but it is there to be read.
    QColor colour = palette().color(QPalette::Active, QPalette::WindowText);
    painter.setPen(colour);
    painter.setFont(timeFont());
    painter.drawText(rect(), Qt::AlignCenter, match.captured(2));
    colour.setAlphaF(0.75F);
    painter.setPen(colour);
    painter.setFont(wordFont());
    painter.drawText(rect(), Qt::AlignHCenter | Qt::AlignTop, match.captured(1).trimmed());
    painter.drawText(rect(), Qt::AlignHCenter | Qt::AlignBottom, match.captured(3).trimmed());
}

} // namespace dorvane

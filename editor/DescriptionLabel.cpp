// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DescriptionLabel.h"

namespace dorvane {

namespace {

// All seven days, a title, a voice and a sound take three lines of the editor's width.
constexpr int lines = 3;
constexpr int widthInDigits = 30;

} // namespace

DescriptionLabel::DescriptionLabel(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(0);
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
}

void DescriptionLabel::setText(const QString& text) {
    if (text == toPlainText())
        return;
    setPlainText(text);
    setAccessibleDescription(text);
}

QSize DescriptionLabel::sizeHint() const {
    return minimumSizeHint();
}

QSize DescriptionLabel::minimumSizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(QLatin1Char('0')) * widthInDigits,
            metrics.lineSpacing() * lines + 1};
}

} // namespace dorvane

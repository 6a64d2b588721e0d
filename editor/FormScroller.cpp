// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FormScroller.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int leastRows = 6; // of text, that can still be worked with

} // namespace

FormScroller::FormScroller(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && isAncestorOf(now))
            ensureWidgetVisible(now);
    });
}

QSize FormScroller::sizeHint() const {
    if (!widget())
        return QScrollArea::sizeHint();
    // A text that may wrap makes the height a question of the width.
    const QSize hint = widget()->sizeHint();
    return {hint.width(), std::max(hint.height(), widget()->heightForWidth(hint.width()))};
}

// As wide as the form with its scroll bar, so that it needs no second one.
QSize FormScroller::minimumSizeHint() const {
    const int width = widget() ? widget()->minimumSizeHint().width() : 0;
    return {width + verticalScrollBar()->sizeHint().width(),
            fontMetrics().lineSpacing() * leastRows};
}

} // namespace dorvane

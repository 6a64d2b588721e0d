// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/FormScroller.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

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
    return widget() ? widget()->sizeHint() : QScrollArea::sizeHint();
}

// As wide as the form with its scroll bar, so that it needs no second one.
QSize FormScroller::minimumSizeHint() const {
    const int width = widget() ? widget()->minimumSizeHint().width() : 0;
    return {width + verticalScrollBar()->sizeHint().width(),
            fontMetrics().lineSpacing() * leastRows};
}

// The window has to learn that the form needs another room.
bool FormScroller::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/sheets/ClockHands.h"

#include <QFont>
#include <QPalette>
#include <QRectF>
#include <QSize>
#include <QTime>

class QPainter;

namespace dorvane {

// What a clock face shows.
struct ClockFaceLook {
    QTime time;
    ClockHand dragged = ClockHand::None;
    bool hasFocus = false;
    QPalette palette;
    QFont font;
};

// The radius of the face in a widget of that size, which leaves room for the ring of the focus.
[[nodiscard]] double clockFaceRadius(QSize size);

// Paints the face in the middle of the rectangle.
void paintClockFace(QPainter& painter, const QRectF& rectangle, const ClockFaceLook& look);

} // namespace dorvane

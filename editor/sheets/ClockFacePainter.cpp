// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/ClockFacePainter.h"

#include <QPainter>

#include <algorithm>

namespace dorvane {

namespace {

constexpr double focusRoom = 3; // device-independent pixels

QColor blended(const QColor& over, const QColor& under, double share) {
    const auto mix = [share](float a, float b) { return float(a * share + b * (1 - share)); };
    return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                            mix(over.blueF(), under.blueF()));
}

void paintDial(QPainter& painter, const ClockFaceLook& look) {
    const QColor base = look.palette.color(QPalette::Base);
    const QColor text = look.palette.color(QPalette::Text);
    const QColor rim =
        look.hasFocus ? look.palette.color(QPalette::Highlight) : blended(text, base, 0.35);
    painter.setPen(QPen(rim, look.hasFocus ? 0.025 : 0.012));
    painter.setBrush(base);
    painter.drawEllipse(QPointF(), 1, 1);
    for (int minute = 0; minute < 60; ++minute) {
        const bool isHour = minute % 5 == 0;
        painter.setPen(QPen(blended(text, base, isHour ? 0.8 : 0.35), isHour ? 0.02 : 0.012,
                            Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(pointAt(minute * 6, isHour ? 0.89 : 0.92), pointAt(minute * 6, 0.95));
    }
}

// Text is laid out in pixels, not in the face's plane, where a font of a tenth of a point would be
// rounded away.
void paintText(QPainter& painter, const ClockFaceLook& look, QPointF middle, const QString& text,
               double height, double radius) {
    painter.save();
    painter.scale(1 / radius, 1 / radius);
    QFont font = look.font;
    font.setPixelSize(std::max(1, qRound(height * radius)));
    painter.setFont(font);
    const QPointF at = middle * radius;
    painter.drawText(QRectF(at.x() - radius, at.y() - radius, 2 * radius, 2 * radius),
                     Qt::AlignCenter, text);
    painter.restore();
}

void paintNumbers(QPainter& painter, const ClockFaceLook& look, double radius) {
    painter.setPen(look.palette.color(QPalette::Text));
    for (int hour = 1; hour <= 12; ++hour)
        paintText(painter, look, pointAt(hour * 30, 0.76), QString::number(hour), 0.16, radius);
}

void paintHand(QPainter& painter, double angle, double length, double width, const QColor& color) {
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(), pointAt(angle, length));
}

void paintHands(QPainter& painter, const ClockFaceLook& look) {
    const ClockHands hands = handsAt(look.time);
    const QColor text = look.palette.color(QPalette::Text);
    const QColor held = look.palette.color(QPalette::Highlight);
    paintHand(painter, hands.hour, ClockHands::hourLength, 0.07,
              look.dragged == ClockHand::Hour ? held : text);
    paintHand(painter, hands.minute, ClockHands::minuteLength, 0.045,
              look.dragged == ClockHand::Minute ? held : text);
    painter.setPen(Qt::NoPen);
    painter.setBrush(held);
    painter.drawEllipse(QPointF(), 0.055, 0.055);
}

} // namespace

double clockFaceRadius(QSize size) {
    return std::max(1.0, std::min(size.width(), size.height()) / 2.0 - focusRoom);
}

void paintClockFace(QPainter& painter, const QRectF& rectangle, const ClockFaceLook& look) {
    const double radius = clockFaceRadius(rectangle.size().toSize());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rectangle.center());
    painter.scale(radius, radius);
    paintDial(painter, look);
    paintNumbers(painter, look, radius);
    paintHands(painter, look);
}

} // namespace dorvane

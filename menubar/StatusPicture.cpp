// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusPicture.h"

#include "platform/Log.h"

#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

namespace dorvane {

namespace {

constexpr int side = 22; // of the picture, in points
constexpr QPointF imageOrigin(4, 0);
constexpr QPointF centre = QPointF(15, 11) - imageOrigin;
constexpr double radius = 6.1;
constexpr double alpha = 0.66;

// Angles are in degrees, counter-clockwise from three o'clock. Two degrees more at either end let
// even a wedge of one minute be seen.
QPainterPath wedgePath(StatusPicture::Wedge wedge) {
    const double base = -wedge.end * 6;
    const double from = base + 88;
    const double to = base + wedge.duration * 6 + 92;
    QPainterPath path(centre);
    path.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), from,
               to - from);
    path.closeSubpath();
    return path;
}

// In the corner between the ring and a foot of the clock, to be told apart on any panel.
const QPointF markCentre(18, 18);
constexpr double markRadius = 3.5;
const QColor markColour(0xF5, 0x8A, 0x07);

// In the other corner, on a ground that sets them off from the foot of the clock. All edges lie on
// whole pixels.
constexpr QRectF pauseGround(0, 13, 8, 9);
constexpr QRectF pauseBars[] = {{1, 14, 2, 7}, {5, 14, 2, 7}};

// Whether the ring of a clock is drawn in light ink.
bool isLight(const QImage& image) {
    constexpr QPoint onTheRing(11, 3);
    const QColor ink = image.pixelColor(onTheRing);
    return ink.alpha() > 0 && ink.lightnessF() > 0.5F;
}

} // namespace

bool operator==(StatusPicture::Wedge a, StatusPicture::Wedge b) {
    if (a.isMarked != b.isMarked || a.isPaused != b.isPaused)
        return false;
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() && b.isEmpty();
    return a.end == b.end && a.duration == b.duration;
}

StatusPicture::StatusPicture() = default;

StatusPicture::~StatusPicture() = default;

void StatusPicture::setBackgroundImage(const QString& svgFile) {
    m_image = std::make_unique<QSvgRenderer>(svgFile);
    if (!m_image->isValid()) {
        qCWarning(logMenubar) << "cannot read the image" << svgFile;
        m_image.reset();
    }
    m_backgrounds.clear();
    m_imageIsLight = isLight(background(side));
}

QImage StatusPicture::background(int pixels) const {
    QImage& image = m_backgrounds[pixels];
    if (!image.isNull())
        return image;
    image = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (m_image) {
        QPainter painter(&image);
        m_image->render(&painter);
    }
    return image;
}

// The wedge takes the colour of the ring, so that the face of the clock sets it off on any panel
// and on any highlight that a panel draws behind the icon.
QColor StatusPicture::wedgeColour() const {
    const float white = m_imageIsLight ? 1.0F : 0.0F;
    return QColor::fromRgbF(white, white, white, float(alpha));
}

QImage StatusPicture::image(Wedge wedge, int pixels) const {
    QImage image = background(pixels);
    if (wedge.isEmpty() && !wedge.isMarked && !wedge.isPaused)
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = pixels / double(side);
    painter.scale(scale, scale);
    // In bands: Qt spreads the filling of more over a pool of threads, and each of them that
    // starts, and ends half a minute later, would be a wake-up more for every minute of the wedge.
    constexpr int band = 4;
    for (int top = 0; top < pixels && !wedge.isEmpty(); top += band) {
        painter.setClipRect(QRectF(0, top / scale, side, band / scale));
        painter.fillPath(wedgePath(wedge), wedgeColour());
    }
    painter.setClipping(false);
    if (wedge.isPaused) {
        painter.fillRect(pauseGround, m_imageIsLight ? Qt::black : Qt::white);
        for (const QRectF& bar : pauseBars)
            painter.fillRect(bar, m_imageIsLight ? Qt::white : Qt::black);
    }
    if (wedge.isMarked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(markColour);
        painter.drawEllipse(markCentre, markRadius, markRadius);
    }
    return image;
}

} // namespace dorvane

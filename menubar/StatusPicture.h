// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QImage>
#include <QString>

#include <memory>

class QSvgRenderer;

namespace dorvane {

// The picture of the clock in the status area: a background image and over it the wedge from the
// present minute to the minute at which the next alarm is due. Main thread only.
//
// The coordinates are those of a view 30 wide and 22 high with the image at (4, 0). A panel gives a
// square, so the picture is the part of the view that the image covers, 22 by 22.
class StatusPicture {
public:
    // In minutes of the clock face. With a duration below 1 there is no wedge, with 60 it is a full
    // disc.
    struct Wedge {
        int end = 0;
        int duration = 0;
        bool isMarked = false; // with a dot beside the clock
        bool isPaused = false; // with two bars there
        [[nodiscard]] bool isEmpty() const { return duration < 1; }
    };

    StatusPicture();
    ~StatusPicture();

    // Replaces the background image by an SVG file. One that cannot be read is logged, and the
    // wedge then stands alone.
    void setBackgroundImage(const QString& svgFile);

    // The picture as a square of `pixels` pixels.
    [[nodiscard]] QImage image(Wedge wedge, int pixels) const;

private:
    [[nodiscard]] QImage background(int pixels) const;
    [[nodiscard]] QColor wedgeColour() const;

    std::unique_ptr<QSvgRenderer> m_image;
    mutable QHash<int, QImage> m_backgrounds; // by their pixels
    bool m_imageIsLight = false;
};

// Pictures that look the same compare equal: an empty wedge has no end.
[[nodiscard]] bool operator==(StatusPicture::Wedge a, StatusPicture::Wedge b);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusPicture.h"

#include "tests/support/Testing.h"

#include <cmath>
#include <numbers>

using namespace dorvane::testing;

namespace {

constexpr int points = 22;

// The colour at a distance in points from the middle, at an angle in degrees counter-clockwise
// from three o'clock.
QColor at(const QImage& image, double degrees, double distance) {
    const double angle = degrees / 180 * std::numbers::pi;
    const double scale = image.width() / double(points);
    return image.pixelColor(int((11 + distance * std::cos(angle)) * scale),
                            int((11 - distance * std::sin(angle)) * scale));
}

TEST(StatusPicture, wedgeCoversTheMinutesBeforeTheAlarmAndTwoDegreesMoreAtEitherEnd) {
    const struct {
        const char* what;
        StatusPicture::Wedge wedge;
        QList<double> inside, outside;
    } cases[] = {
        {"none", {15, 0}, {}, {0, 45, 90, 180, 270}},
        {"overdue", {15, -3}, {}, {0, 45, 90, 180, 270}},
        {"quarter past, in eleven minutes", {15, 11}, {-0.5, 30, 66}, {-5, 71, 180, 270}},
        {"on the hour, in one minute", {0, 1}, {89, 92, 97}, {84, 103, 180, 270}},
        {"half past, in half an hour", {30, 30}, {-85, 0, 85}, {-95, 95, 180}},
        {"an hour or more", {42, 60}, {0, 45, 90, 135, 180, 225, 270, 315}, {}},
    };
    const StatusPicture picture;
    for (const int pixels : {220, 880}) {
        for (const auto& c : cases) {
            const QImage image = picture.image(c.wedge, pixels);
            for (const double angle : c.inside) {
                const QColor colour = at(image, angle, 5.8);
                EXPECT_EQ(colour.alpha(), 168) << c.what << " at " << angle;
                EXPECT_EQ(colour.lightness(), 0) << c.what << " at " << angle;
                EXPECT_EQ(at(image, angle, 6.4).alpha(), 0) << c.what << " beyond " << angle;
            }
            for (const double angle : c.outside)
                EXPECT_EQ(at(image, angle, 5.8).alpha(), 0) << c.what << " at " << angle;
        }
    }
}

} // namespace

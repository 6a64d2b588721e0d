// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/ClockFace.h"

#include "editor/sheets/ClockFacePainter.h"
#include "editor/sheets/ClockHands.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

TEST(ClockHandsTest, movesByTheShorterWay) {
    const struct {
        QTime from;
        ClockHand hand;
        double angle;
        QTime to;
    } cases[] = {
        {{7, 30}, ClockHand::Minute, 90, {7, 15}}, {{7, 30}, ClockHand::Minute, 88, {7, 15}},
        {{7, 58}, ClockHand::Minute, 12, {8, 2}},  {{8, 2}, ClockHand::Minute, 348, {7, 58}},
        {{23, 59}, ClockHand::Minute, 0, {0, 0}},  {{0, 0}, ClockHand::Minute, 354, {23, 59}},
        {{7, 30}, ClockHand::Hour, 255, {8, 30}},  {{11, 0}, ClockHand::Hour, 0, {12, 0}},
        {{12, 0}, ClockHand::Hour, 330, {11, 0}},  {{23, 45}, ClockHand::Hour, 22.5, {0, 45}},
        {{7, 30}, ClockHand::None, 90, {7, 30}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(timeWithHandAt(c.from, c.hand, c.angle), c.to)
            << qPrintable(c.from.toString()) << " to " << c.angle;
}

// The keys are tried in the editor's sheets.
TEST(ClockFaceTest, itsHandsFollowTheMouse) {
    ClockFace face;
    face.resize(206, 206);
    face.setTime(QTime(10, 0));
    const auto at = [&face](QEvent::Type type, double angle) {
        const QPointF middle = QRectF(face.rect()).center();
        QMouseEvent event(type, middle + pointAt(angle, 0.6) * clockFaceRadius(face.size()), {},
                          Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&face, &event);
    };
    at(QEvent::MouseButtonPress, 0);
    at(QEvent::MouseMove, 90);
    EXPECT_EQ(face.time(), QTime(10, 15));
}

} // namespace

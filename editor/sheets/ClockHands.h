// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QTime>

namespace dorvane {

// The geometry of a clock's hands. Angles are degrees clockwise from twelve o'clock; points lie in
// a plane whose origin is the middle of the face, whose radius is 1 and whose y grows downward.

enum class ClockHand { None, Hour, Minute };

struct ClockHands {
    static constexpr double hourLength = 0.42;
    static constexpr double minuteLength = 0.63;

    double hour = 0;
    double minute = 0;
};

[[nodiscard]] ClockHands handsAt(QTime time);

[[nodiscard]] double angleOf(QPointF point);
// How far apart two directions are, 0 to 180.
[[nodiscard]] double angleBetween(double a, double b);
[[nodiscard]] QPointF pointAt(double angle, double radius);

// The hand that a press at the point takes: beyond the tip of the hour hand always the other one,
// within it the nearer one. None outside the face.
[[nodiscard]] ClockHand handAt(QPointF point, QTime time);

// The time after the hand was moved to the angle by the shorter way. Past twelve, the minute hand
// takes the hour along, and the hour hand changes the half of the day.
[[nodiscard]] QTime timeWithHandAt(QTime time, ClockHand hand, double angle);

// The same minute twelve hours away.
[[nodiscard]] QTime inOtherHalfOfDay(QTime time);

} // namespace dorvane

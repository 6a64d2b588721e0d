// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/ClockHands.h"

#include <cmath>
#include <numbers>

namespace dorvane {

namespace {

constexpr double degreesPerHour = 30;
constexpr double degreesPerMinute = 6;
constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 60 * secondsPerMinute;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

// The nearest whole number of steps from one direction to another, by the shorter way.
int stepsBetween(double from, double to, double degreesPerStep) {
    return int(std::lround(std::remainder(to - from, 360.0) / degreesPerStep));
}

} // namespace

ClockHands handsAt(QTime time) {
    return {time.hour() % 12 * degreesPerHour + time.minute() * degreesPerHour / 60,
            time.minute() * degreesPerMinute};
}

double angleOf(QPointF point) {
    const double degrees = std::atan2(point.x(), -point.y()) * 180 / std::numbers::pi;
    return degrees < 0 ? degrees + 360 : degrees;
}

double angleBetween(double a, double b) {
    return std::abs(std::remainder(a - b, 360.0));
}

QPointF pointAt(double angle, double radius) {
    return {radius * std::sin(radians(angle)), -radius * std::cos(radians(angle))};
}

ClockHand handAt(QPointF point, QTime time) {
    const double radius = std::hypot(point.x(), point.y());
    if (radius > 1)
        return ClockHand::None;
    const ClockHands hands = handsAt(time);
    const double angle = angleOf(point);
    const bool nearerToHour = angleBetween(angle, hands.hour) < angleBetween(angle, hands.minute);
    return radius <= ClockHands::hourLength * 1.1 && nearerToHour ? ClockHand::Hour
                                                                  : ClockHand::Minute;
}

QTime timeWithHandAt(QTime time, ClockHand hand, double angle) {
    const ClockHands hands = handsAt(time);
    switch (hand) {
    case ClockHand::Hour:
        return time.addSecs(stepsBetween(hands.hour, angle, degreesPerHour) * secondsPerHour);
    case ClockHand::Minute:
        return time.addSecs(stepsBetween(hands.minute, angle, degreesPerMinute) * secondsPerMinute);
    case ClockHand::None:
        break;
    }
    return time;
}

QTime inOtherHalfOfDay(QTime time) {
    return time.addSecs(12 * secondsPerHour);
}

} // namespace dorvane

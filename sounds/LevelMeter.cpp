// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/LevelMeter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace dorvane {

namespace {

constexpr int lamps = 28;
constexpr double floorDecibels = -48;
constexpr double fallPerStep = 0.06;
// From here on the lamps warn: about -9 dB, where speech begins to be loud, and just below full.
constexpr double loudShare = 0.8;
constexpr double fullShare = 0.95;

// How much of the row a level lights.
double shareOf(float level) {
    if (level <= 0)
        return 0;
    const double decibels = 20 * std::log10(static_cast<double>(level));
    return std::clamp(1 - decibels / floorDecibels, 0.0, 1.0);
}

QColor lampColour(double share) {
    if (share >= fullShare)
        return {0xD9, 0x39, 0x2E};
    return share >= loudShare ? QColor(0xE0, 0x9B, 0x1A) : QColor(0x2A, 0x9D, 0x5C);
}

} // namespace

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LevelMeter::setLevel(float level) {
    const double share = std::max(shareOf(level), m_share - fallPerStep);
    if (std::lround(share * lamps) != std::lround(m_share * lamps))
        update();
    m_share = share;
}

void LevelMeter::reset() {
    m_share = 0;
    update();
}

QSize LevelMeter::sizeHint() const {
    return {lamps * 8, 12};
}

void LevelMeter::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor dark = palette().color(QPalette::WindowText);
    dark.setAlphaF(0.14F);
    const double pitch = static_cast<double>(width()) / lamps;
    const auto lit = std::lround(m_share * lamps);
    for (int i = 0; i < lamps; ++i) {
        painter.setBrush(i < lit ? lampColour((i + 0.5) / lamps) : dark);
        painter.drawRoundedRect(QRectF(i * pitch + 1, 0, pitch - 2, height()), 1.5, 1.5);
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreathLight.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace dorvane {

namespace {

constexpr double breathLength = 10; // seconds
constexpr double smallest = 0.45;   // share of the widget's width

} // namespace

void BreathLight::setTime(Sound::Seconds time) {
    m_breath = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * time.count() / breathLength);
    update();
}

void BreathLight::paintEvent(QPaintEvent*) {
    const double radius =
        std::min(width(), height()) / 2.0 * (smallest + (1 - smallest) * m_breath);
    const QPointF centre = QRectF(rect()).center();
    QColor core = palette().color(QPalette::Highlight);
    core.setAlphaF(0.55F + 0.3F * static_cast<float>(m_breath));
    QColor rim = core;
    rim.setAlphaF(0.12F);
    QRadialGradient light(centre, radius);
    light.setColorAt(0, core);
    light.setColorAt(0.6, core);
    light.setColorAt(1, rim);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/WindowColours.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>

#include <utility>

namespace dorvane {

namespace {

// Greys a little towards blue; texts have a contrast of 7 and more on what is behind them, links
// and chosen texts of 4.5, and disabled texts of less than 4 but can be read.
QPalette darkPalette() {
    const std::pair<QPalette::ColorRole, QRgb> colours[] = {
        {QPalette::Window, 0x313438},
        {QPalette::WindowText, 0xe9eaec},
        {QPalette::Base, 0x1c1d20},
        {QPalette::AlternateBase, 0x232528},
        {QPalette::Text, 0xe9eaec},
        {QPalette::PlaceholderText, 0x9a9da3},
        {QPalette::Button, 0x43474c},
        {QPalette::ButtonText, 0xe9eaec},
        {QPalette::BrightText, 0xff6b6b},
        {QPalette::ToolTipBase, 0x3c3f44},
        {QPalette::ToolTipText, 0xf3f4f5},
        {QPalette::Highlight, 0x2f6fc4},
        {QPalette::HighlightedText, 0xffffff},
        {QPalette::Link, 0x7db3ff},
        {QPalette::LinkVisited, 0xc3a3f0},
        {QPalette::Light, 0x5a5e64},
        {QPalette::Midlight, 0x4c5055},
        {QPalette::Mid, 0x26292c},
        {QPalette::Dark, 0x17191b},
        {QPalette::Shadow, 0x0c0d0e},
    };
    const std::pair<QPalette::ColorRole, QRgb> whenDisabled[] = {
        {QPalette::WindowText, 0x8d9197}, {QPalette::Text, 0x8d9197},
        {QPalette::ButtonText, 0x8d9197}, {QPalette::PlaceholderText, 0x666a6f},
        {QPalette::Base, 0x2a2c30},       {QPalette::Button, 0x383b40},
        {QPalette::Highlight, 0x4a4e53},  {QPalette::HighlightedText, 0xb5b8bc},
        {QPalette::Link, 0x5f7fa8},       {QPalette::LinkVisited, 0x8a7aa3},
    };
    QPalette palette;
    for (const auto& [role, colour] : colours)
        palette.setColor(QPalette::All, role, QColor(colour));
    for (const auto& [role, colour] : whenDisabled)
        palette.setColor(QPalette::Disabled, role, QColor(colour));
    return palette;
}

// For themes that read the desktop's colours once, and stay dark when it turns light.
QPalette lightPalette() {
    const QColor grey(0xefefef);
    QPalette palette(grey, grey);
    palette.setColor(QPalette::ToolTipBase, QColor(0xffffdc));
    palette.setColor(QPalette::ToolTipText, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0x2f6fc4));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xb0b0b0));
    return palette;
}

} // namespace

bool windowsAreDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

void WindowColours::follow(std::optional<bool> dark) {
    if (m_ours && m_ours == dark)
        return;
    if (std::exchange(m_ours, std::nullopt)) {
        QApplication::setPalette(QPalette()); // the theme's
        QToolTip::setPalette(QApplication::palette("QTipLabel"));
    }
    if (!dark || *dark == windowsAreDark())
        return;
    m_ours = dark;
    QApplication::setPalette(*dark ? darkPalette() : lightPalette());
    QToolTip::setPalette(QApplication::palette()); // whole, with what newer Qt adds to it
}

} // namespace dorvane

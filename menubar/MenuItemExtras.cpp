// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MenuItemExtras.h"

#include "core/Isolated.h"
#include "menubar/OneLine.h"
#include "platform/RunLoop.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <limits>

namespace dorvane {

namespace {

// What a screen reader reads of a title, and Qt measures though it is not drawn.
constexpr int longestSpoken = 200;
constexpr int unlimited = std::numeric_limits<int>::max();

} // namespace

MenuTitleFonts MenuTitleFonts::of(const QFont& menuFont) {
    MenuTitleFonts fonts{menuFont, menuFont};
    const double scale = std::max(1.0, QFontInfo(menuFont).pixelSize() / 14.0);
    fonts.title.setPixelSize(int(std::lround(14 * scale)));
    fonts.subtitle.setPixelSize(int(std::lround(10 * scale)));
    fonts.widest *= scale;
    // With kerning the gap between the two would depend on the letters beside it.
    fonts.title.setKerning(false);
    fonts.subtitle.setKerning(false);
    return fonts;
}

QString subtitlePart(const QString& subtitle, double widest,
                     const std::function<double(const QString&)>& width) {
    QString part = u' ' + subtitle;
    const double measured = width(part);
    if (measured < widest)
        return part;
    const auto fitting = qsizetype(double(part.size()) * widest / measured) - 2;
    return wholeCharacters(part, fitting) + QStringLiteral("...");
}

MenuItemExtras::MenuItemExtras(RunLoop& runLoop, QObject* parent) : QAction(parent) {
    connect(this, &QAction::triggered, this, [this, &runLoop] {
        if (m_command)
            runLoop.defer(m_command);
    });
}

void MenuItemExtras::setTitle(const QString& title, const QString& subtitle,
                              const MenuTitleFonts& fonts) {
    m_title = oneLine(title, unlimited);
    if (subtitle == m_subtitle)
        return;
    m_subtitle = subtitle;
    m_subtitlePart.clear();
    if (subtitle.isEmpty())
        return;
    const QFontMetricsF metrics(fonts.subtitle);
    m_subtitlePart = dorvane::subtitlePart(
        oneLine(subtitle, unlimited), fonts.widest,
        [&metrics](const QString& text) { return metrics.horizontalAdvance(text); });
}

QString MenuItemExtras::spokenText() const {
    return m_subtitle.isEmpty() ? m_title
                                : m_title + u' ' + isolated(oneLine(m_subtitle, longestSpoken));
}

} // namespace dorvane

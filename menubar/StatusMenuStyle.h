// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuItemExtras.h"
#include "sounds/LongMenuStyle.h"

class QStyleOptionMenuItem;

namespace dorvane {

// Draws menu items with a title in two sizes, and separators and headings that can be seen on dark
// and on light menus. All else is Fusion's.
class StatusMenuStyle final : public LongMenuStyle {
public:
    // Stands in the text of a menu item's option between the title and the subtitle.
    static constexpr QChar titleSeparator = u'\u001f';

    explicit StatusMenuStyle(MenuTitleFonts fonts);

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

private:
    void drawTwoTexts(const QStyleOptionMenuItem& item, const QString& title,
                      const QString& subtitle, QPainter& painter) const;

    MenuTitleFonts m_fonts;
};

} // namespace dorvane

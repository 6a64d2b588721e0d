// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusMenuStyle.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace dorvane {

namespace {

struct TwoTexts {
    QString title;
    QString subtitle;
};

std::optional<TwoTexts> twoTexts(const QStyleOptionMenuItem& item) {
    const qsizetype at = item.text.indexOf(StatusMenuStyle::titleSeparator);
    if (at < 0)
        return std::nullopt;
    return TwoTexts{item.text.left(at), item.text.mid(at + 1)};
}

// Where Fusion begins the text of an item: behind its margins and the column of check marks.
int textIndent(const QStyleOptionMenuItem& item) {
    constexpr int margins = 7;
    const int checkColumn = std::max({int(item.rect.height() * 0.79), item.maxIconWidth, 21});
    return margins + checkColumn;
}

// The text colour, toned down towards the background.
QColor toned(const QPalette& palette, double share) {
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    const auto mix = [share](float a, float b) { return float(share) * a + float(1 - share) * b; };
    return QColor::fromRgbF(mix(text.redF(), ground.redF()), mix(text.greenF(), ground.greenF()),
                            mix(text.blueF(), ground.blueF()));
}

QColor textColour(const QStyleOptionMenuItem& item) {
    if (!item.state.testFlag(QStyle::State_Enabled))
        return item.palette.color(QPalette::Disabled, QPalette::Text);
    return item.palette.color(
        item.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text);
}

void drawSeparator(const QStyleOptionMenuItem& item, QPainter& painter) {
    constexpr int margin = 8;
    const QRect row = item.rect.adjusted(margin, 0, -margin, 0);
    painter.fillRect(row.left(), row.center().y(), row.width(), 1, toned(item.palette, 0.2));
}

} // namespace

StatusMenuStyle::StatusMenuStyle(MenuTitleFonts fonts)
    : LongMenuStyle(QStringLiteral("Fusion")), m_fonts(std::move(fonts)) {}

int StatusMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                 const QWidget* widget) const {
    if (metric == PM_MenuVMargin)
        return 4;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int StatusMenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                               QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_EtchDisabledText:            // looks embossed on a dark background
    case SH_Menu_AllowActiveAndDisabled: // headings are skipped
        return 0;
    default:
        return LongMenuStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize StatusMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                        const QSize& size, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !item)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    if (item->menuItemType == QStyleOptionMenuItem::Separator)
        return {size.width(), 9};
    const auto texts = twoTexts(*item);
    if (!texts)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    const QFontMetricsF titleMetrics(m_fonts.title);
    const double width = titleMetrics.horizontalAdvance(texts->title) +
                         QFontMetricsF(m_fonts.subtitle).horizontalAdvance(texts->subtitle);
    QStyleOptionMenuItem plain = *item;
    plain.text.clear();
    return QProxyStyle::sizeFromContents(type, &plain, {int(std::ceil(width)), size.height()},
                                         widget);
}

void StatusMenuStyle::drawControl(ControlElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || !item) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        drawSeparator(*item, *painter);
        return;
    }
    QStyleOptionMenuItem plain = *item;
    // Headings are disabled items, and meant to be read.
    plain.palette.setColor(QPalette::Disabled, QPalette::Text, toned(item->palette, 0.6));
    const auto texts = twoTexts(*item);
    if (texts)
        plain.text.clear(); // Fusion then draws the background and the arrow
    QProxyStyle::drawControl(element, &plain, painter, widget);
    if (texts)
        drawTwoTexts(plain, texts->title, texts->subtitle, *painter);
}

void StatusMenuStyle::drawTwoTexts(const QStyleOptionMenuItem& item, const QString& title,
                                   const QString& subtitle, QPainter& painter) const {
    const QFontMetricsF metrics(m_fonts.title);
    const double titleWidth = metrics.horizontalAdvance(title);
    const double subtitleWidth = QFontMetricsF(m_fonts.subtitle).horizontalAdvance(subtitle);
    const QRectF row = item.rect;
    const double baseline =
        std::round(row.center().y() + (metrics.ascent() - metrics.descent()) / 2);
    const int indent = textIndent(item);
    const bool rightToLeft = item.direction == Qt::RightToLeft;
    const double titleX = rightToLeft ? row.right() - indent - titleWidth : row.left() + indent;
    const double subtitleX = rightToLeft ? titleX - subtitleWidth : titleX + titleWidth;
    painter.save();
    painter.setPen(textColour(item));
    painter.setFont(m_fonts.title);
    painter.drawText(QPointF(titleX, baseline), title);
    painter.setFont(m_fonts.subtitle);
    // Not every script has an oblique face: the upright one is slanted, by as much as such faces.
    constexpr double obliqueness = 0.3;
    painter.translate(subtitleX, baseline);
    painter.shear(-obliqueness, 0);
    painter.drawText(QPointF(0, 0), subtitle);
    painter.restore();
}

} // namespace dorvane

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

std::optional<TwoTexts> twoTexts(const QStyleOptionMenuItem* item) {
    const qsizetype at = item ? item->text.indexOf(StatusMenuStyle::titleSeparator) : -1;
    if (at < 0)
        return std::nullopt;
    return TwoTexts{item->text.left(at), item->text.mid(at + 1)};
}

// Where Fusion begins the text of an item: behind its margins and the column of check marks.
int textIndent(const QStyleOptionMenuItem& item) {
    constexpr int margins = 7;
    const int checkColumn = std::max({int(item.rect.height() * 0.79), item.maxIconWidth, 21});
    return margins + checkColumn;
}

QColor textColour(const QStyleOptionMenuItem& item) {
    if (!item.state.testFlag(QStyle::State_Enabled))
        return item.palette.color(QPalette::Disabled, QPalette::Text);
    return item.palette.color(
        item.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text);
}

} // namespace

StatusMenuStyle::StatusMenuStyle(MenuTitleFonts fonts)
    : QProxyStyle(QStringLiteral("Fusion")), m_fonts(std::move(fonts)) {}

int StatusMenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                               QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_EtchDisabledText: // looks embossed on a dark background
        return 0;
    case SH_Menu_AllowActiveAndDisabled: // headings are skipped
        return 0;
    case SH_Menu_Scrollable: // rather than in columns, when it is higher than the screen
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize StatusMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                        const QSize& size, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const auto texts = type == CT_MenuItem ? twoTexts(item) : std::nullopt;
    if (!texts)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    const QFontMetricsF titleMetrics(m_fonts.title);
    const double width = titleMetrics.horizontalAdvance(texts->title) +
                         QFontMetricsF(m_fonts.subtitle).horizontalAdvance(texts->subtitle);
    const QSize contents(int(std::ceil(width)),
                         std::max(size.height(), int(std::ceil(titleMetrics.height()))));
    QStyleOptionMenuItem plain = *item;
    plain.text.clear();
    return QProxyStyle::sizeFromContents(type, &plain, contents, widget);
}

void StatusMenuStyle::drawControl(ControlElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const auto texts = element == CE_MenuItem ? twoTexts(item) : std::nullopt;
    if (!texts) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionMenuItem plain = *item; // background and arrow
    plain.text.clear();
    QProxyStyle::drawControl(element, &plain, painter, widget);

    const QFontMetricsF titleMetrics(m_fonts.title);
    const double titleWidth = titleMetrics.horizontalAdvance(texts->title);
    const double subtitleWidth = QFontMetricsF(m_fonts.subtitle).horizontalAdvance(texts->subtitle);
    const QRectF row = item->rect;
    const double baseline = row.center().y() + (titleMetrics.ascent() - titleMetrics.descent()) / 2;
    const double indent = textIndent(*item);
    const bool rightToLeft = item->direction == Qt::RightToLeft;
    const double titleX = rightToLeft ? row.right() - indent - titleWidth : row.left() + indent;
    const double subtitleX = rightToLeft ? titleX - subtitleWidth : titleX + titleWidth;
    painter->save();
    painter->setPen(textColour(*item));
    painter->setFont(m_fonts.title);
    painter->drawText(QPointF(titleX, std::round(baseline)), texts->title);
    painter->setFont(m_fonts.subtitle);
    painter->drawText(QPointF(subtitleX, std::round(baseline)), texts->subtitle);
    painter->restore();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace dorvane {

// For menus with more entries than a screen is high: one column that scrolls, where most styles go
// on in further columns, soon beyond the screen's edge. Main thread only.
class LongMenuStyle : public QProxyStyle {
public:
    // Over the style of that name, or over the application's.
    explicit LongMenuStyle(const QString& base = {}) : QProxyStyle(base) {}

    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const override {
        return hint == SH_Menu_Scrollable
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace dorvane {

// For menus with more entries than a screen is high: one column that scrolls.
class LongMenuStyle final : public QProxyStyle {
public:
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const override {
        return hint == SH_Menu_Scrollable
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace dorvane

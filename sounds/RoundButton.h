// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QToolButton>

namespace dorvane {

// For buttons whose picture is round: so is what shows their focus.
inline void showFocusRound(QToolButton& button) {
    button.setStyleSheet(
        QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: %1px; }"
                       "QToolButton:focus { border-color: palette(highlight); }")
            .arg(button.iconSize().width() / 2 + 2));
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"
#include "platform/EscapedText.h"

#include <QToolButton>

namespace dorvane {

// For buttons whose picture is round: so is what shows their focus.
inline void showFocusRound(QToolButton& button) {
    button.setStyleSheet(
        QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: %1px; }"
                       "QToolButton:focus { border-color: palette(highlight); }")
            .arg(button.iconSize().width() / 2 + 2));
}

// What pressing it does, as a picture of the bundle and in words.
inline void showAction(QToolButton& button, const Bundle& bundle, const char* image,
                       const QString& action) {
    button.setIcon(
        QIcon(bundle.resourcePath(QStringLiteral("images/%1.svg").arg(QLatin1String(image)))));
    button.setAccessibleName(action);
    button.setToolTip(escapedText(action));
}

} // namespace dorvane

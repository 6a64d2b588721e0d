// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/Testing.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>

namespace dorvane::testing {

// The windows of this name that are to be seen.
template<typename Window = QWidget>
[[nodiscard]] QList<Window*> windowsNamed(const char* name) {
    QList<Window*> found;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QLatin1String(name) && widget->isVisible())
            found << static_cast<Window*>(widget);
    return found;
}

} // namespace dorvane::testing

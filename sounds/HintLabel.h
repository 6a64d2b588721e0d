// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace dorvane {

// A line beside something taller, whose text may wrap into the height that is there: what it says
// never changes the size of its window.
class HintLabel final : public QLabel {
    Q_OBJECT

public:
    explicit HintLabel(QWidget* parent = nullptr) : QLabel(parent) {
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    }

    [[nodiscard]] bool hasHeightForWidth() const override { return false; }
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace dorvane {

// A text of several lines that looks like a label but has room for a sentence of any length: it
// wraps also inside words and scrolls beyond its lines.
class DescriptionLabel final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit DescriptionLabel(QWidget* parent = nullptr);

    void setText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
};

} // namespace dorvane

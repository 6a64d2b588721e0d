// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

namespace dorvane {

// The field for the number of minutes or hours: takes nothing but digits, also by pasting, and
// stays in editing while what it holds is no valid interval.
class IntervalField final : public QLineEdit {
    Q_OBJECT

public:
    explicit IntervalField(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

namespace dorvane {

// Holds a form that wants all the room it needs and scrolls on a screen that is too small for it.
// Whatever gets the focus, by a letter too, is scrolled into sight.
class FormScroller final : public QScrollArea {
    Q_OBJECT

public:
    explicit FormScroller(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace dorvane

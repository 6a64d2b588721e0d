// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace dorvane {

// A text with a time in it, "Take a break for 04:59 mins", that can be read across a room: the time
// large, the words before and after it small above and below.
class CountdownLabel final : public QLabel {
    Q_OBJECT

public:
    explicit CountdownLabel(QWidget* parent = nullptr);

    // That of a longest text, so that nothing moves while it counts.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont timeFont() const;
    [[nodiscard]] QFont wordFont() const;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace dorvane {

// How loud the microphone hears, as a row of lamps that falls back slowly. For the eye only: a
// level that changes twenty times a second is nothing to be read out.
class LevelMeter final : public QWidget {
public:
    explicit LevelMeter(QWidget* parent = nullptr);

    // 0.0 to 1.0, as amplitude; the lamps show it in decibels. To be called at a steady pace.
    void setLevel(float level);
    void reset();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_share = 0;
};

} // namespace dorvane

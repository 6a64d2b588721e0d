// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/sheets/ClockHands.h"

#include <QTime>
#include <QWidget>

namespace dorvane {

// A clock to set the time of day on: drag the hands, turn the wheel or press the arrow keys (a
// minute each, an hour with Shift or the Page keys), press A or P for the half of the day.
class ClockFace final : public QWidget {
    Q_OBJECT

public:
    explicit ClockFace(QWidget* parent = nullptr);

    [[nodiscard]] QTime time() const { return m_time; }
    // To the minute. Does not emit timeChanged().
    void setTime(QTime time);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return width; }

Q_SIGNALS:
    // By the user; continually while a hand is dragged.
    void timeChanged(QTime time);
    // A hand was let go of.
    void dragFinished();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(QTime time);
    void addMinutes(int minutes) { choose(m_time.addSecs(minutes * 60)); }
    // From the widget to the plane of ClockHands.
    [[nodiscard]] QPointF onFace(QPointF position) const;

    QTime m_time{12, 0};
    ClockHand m_dragged = ClockHand::None;
    int m_wheelRest = 0; // eighths of a degree that made no whole notch yet
};

} // namespace dorvane

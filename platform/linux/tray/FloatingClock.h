// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QPoint>

#include <functional>
#include <optional>

namespace dorvane {

// The status item where there is no panel: a small translucent clock above all windows, on all
// desktops, that can be dragged about. clicked() tells of a click with either button, of a press by
// a screen reader, and of Return, Space or Down where the desktop gives it the keyboard. It never
// takes the keyboard from the window that has it.
class FloatingClock final : public QAbstractButton {
    Q_OBJECT

public:
    // `wanted` is where it stood last; `dropped` is told where it was dragged to, in
    // device-independent pixels of the desktop. A Wayland desktop places it by itself and tells
    // nobody where.
    FloatingClock(std::optional<QPoint> wanted, std::function<void(QPoint)> dropped);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void place();

    std::optional<QPoint> m_wanted;
    std::function<void(QPoint)> m_dropped;
    QPoint m_grip; // where inside the clock the button went down
    bool m_translucent;
    bool m_dragging = false;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/StatusPlacement.h"

#include <algorithm>
#include <array>

namespace dorvane {

namespace {

constexpr int iconLength = 22;     // along the panel
constexpr int thickestPanel = 96;  // of those that reserve no place
constexpr int floatingMargin = 12; // to the edge of the screen
constexpr int firstDrop = 64;      // below the buttons of a window that fills the screen

struct Strip {
    PanelEdge edge;
    QRect area; // empty without a panel there
};

// In the order in which an edge is looked for: a corner belongs to the horizontal panel.
std::array<Strip, 4> strips(const ScreenArea& screen) {
    const QRect& full = screen.full;
    const QRect& free = screen.available;
    return {{
        {PanelEdge::Top, QRect(full.left(), full.top(), full.width(), free.top() - full.top())},
        {PanelEdge::Bottom,
         QRect(full.left(), free.bottom() + 1, full.width(), full.bottom() - free.bottom())},
        {PanelEdge::Left, QRect(full.left(), full.top(), free.left() - full.left(), full.height())},
        {PanelEdge::Right,
         QRect(free.right() + 1, full.top(), full.right() - free.right(), full.height())},
    }};
}

// The top left corner nearest to `place` with which the window is inside `area`; a window that is
// too large keeps its top left corner inside.
QPoint pulledInside(QPoint place, QSize window, const QRect& area) {
    const int lastX = std::max(area.left(), area.right() + 1 - window.width());
    const int lastY = std::max(area.top(), area.bottom() + 1 - window.height());
    return {std::clamp(place.x(), area.left(), lastX), std::clamp(place.y(), area.top(), lastY)};
}

QPoint statusCorner(QSize window, const ScreenArea& screen) {
    const QRect& free = screen.available;
    PanelEdge edge = PanelEdge::Top;
    for (const Strip& strip : strips(screen)) {
        if (!strip.area.isEmpty()) {
            edge = strip.edge;
            break;
        }
    }
    const bool atTop = edge == PanelEdge::Top;
    const bool atLeft = edge == PanelEdge::Left;
    const QPoint corner(atLeft ? free.left() : free.right() + 1 - window.width(),
                        atTop ? free.top() : free.bottom() + 1 - window.height());
    return pulledInside(corner, window, free);
}

} // namespace

ScreenArea withPanel(const ScreenArea& screen, const QRect& panel) {
    const QRect& full = screen.full;
    const QRect part = panel.intersected(full);
    ScreenArea result = screen;
    if (part.isEmpty() || part == full)
        return result;
    QRect& free = result.available;
    if (part.width() >= part.height()) {
        if (part.top() == full.top())
            free.setTop(std::max(free.top(), part.bottom() + 1));
        else if (part.bottom() == full.bottom())
            free.setBottom(std::min(free.bottom(), part.top() - 1));
    } else if (part.left() == full.left()) {
        free.setLeft(std::max(free.left(), part.right() + 1));
    } else if (part.right() == full.right()) {
        free.setRight(std::min(free.right(), part.left() - 1));
    }
    return result;
}

ScreenArea screenOf(const QRect& icon, const QList<ScreenArea>& screens) {
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&icon](const ScreenArea& screen) {
            return icon.isEmpty() ? screen.available != screen.full
                                  : screen.full.contains(icon.center());
        });
    if (found != screens.end())
        return *found;
    return screens.value(0);
}

PanelEdge panelEdgeAt(QPoint point, const ScreenArea& screen) {
    for (const Strip& strip : strips(screen))
        if (strip.area.contains(point))
            return strip.edge;
    return point.y() <= screen.full.center().y() ? PanelEdge::Top : PanelEdge::Bottom;
}

QRect iconAroundClick(QPoint click, const ScreenArea& screen) {
    const QRect around(click.x() - iconLength / 2, click.y() - iconLength / 2, iconLength,
                       iconLength);
    for (const Strip& strip : strips(screen)) {
        if (!strip.area.contains(click))
            continue;
        const bool vertical = strip.edge == PanelEdge::Left || strip.edge == PanelEdge::Right;
        const QRect across =
            vertical ? QRect(strip.area.left(), around.top(), strip.area.width(), around.height())
                     : QRect(around.left(), strip.area.top(), around.width(), strip.area.height());
        return across.intersected(screen.full);
    }
    const QRect middle =
        screen.full.adjusted(thickestPanel, thickestPanel, -thickestPanel, -thickestPanel);
    const bool reserved = screen.available != screen.full;
    if (reserved || middle.contains(click))
        return {};
    return around.intersected(screen.full);
}

QPoint hangingPlace(const QRect& icon, QSize window, const ScreenArea& screen) {
    if (icon.isEmpty())
        return statusCorner(window, screen);
    QPoint place;
    switch (panelEdgeAt(icon.center(), screen)) {
    case PanelEdge::Top:
        place = QPoint(icon.left(), icon.bottom() + 1);
        break;
    case PanelEdge::Bottom:
        place = QPoint(icon.left(), icon.top() - window.height());
        break;
    case PanelEdge::Left:
        place = QPoint(icon.right() + 1, icon.top());
        break;
    case PanelEdge::Right:
        place = QPoint(icon.left() - window.width(), icon.top());
        break;
    }
    return pulledInside(place, window, screen.available);
}

QPoint floatingPlace(std::optional<QPoint> wanted, QSize window, const QList<ScreenArea>& screens) {
    if (wanted) {
        const auto visible = [&](const ScreenArea& screen) {
            const QRect part = screen.full.intersected(QRect(*wanted, window));
            return part.width() * part.height();
        };
        const auto most = std::max_element(
            screens.begin(), screens.end(),
            [&](const auto& one, const auto& other) { return visible(one) < visible(other); });
        if (visible(*most) > 0)
            return pulledInside(*wanted, window, most->available);
    }
    const QRect& free = screens.first().available;
    const QPoint corner(free.right() + 1 - window.width() - floatingMargin, free.top() + firstDrop);
    return pulledInside(corner, window, free);
}

} // namespace dorvane

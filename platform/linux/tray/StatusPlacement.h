// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace dorvane {

// Where things belong beside a panel. Everything is in device-independent pixels on one desktop;
// functions of their arguments alone.

// A screen: all of it, and what panels leave free.
struct ScreenArea {
    QRect full;
    QRect available;
};

enum class PanelEdge { Top, Bottom, Left, Right };

// The screen without what a panel at one of its edges takes; unchanged by a panel elsewhere.
[[nodiscard]] ScreenArea withPanel(const ScreenArea& screen, const QRect& panel);

// The screen that has the icon; for an empty icon the first one with a panel, or else the first.
[[nodiscard]] ScreenArea screenOf(const QRect& icon, const QList<ScreenArea>& screens);

// The edge whose panel holds `point`. Where no panel reserves that place, the nearer of top and
// bottom: panels that hide themselves are horizontal nearly always, and a floating clock wants its
// menu where there is room.
[[nodiscard]] PanelEdge panelEdgeAt(QPoint point, const ScreenArea& screen);

// What is known of an icon that was clicked at `click`: a piece of the panel there, across its
// whole thickness. Empty when there can be no panel at that place.
[[nodiscard]] QRect iconAroundClick(QPoint click, const ScreenArea& screen);

// The top left corner of a window that hangs from `icon`: away from the panel, left edges aligned
// (top edges beside a vertical panel), kept inside the available area. For an empty icon, the
// corner where panels have their status area.
[[nodiscard]] QPoint hangingPlace(const QRect& icon, QSize window, const ScreenArea& screen);

// The place of a floating window: `wanted`, pulled into the screen it is mostly on, or at the
// right of the first screen, near the top, when it is on none. `screens` is not empty.
[[nodiscard]] QPoint floatingPlace(std::optional<QPoint> wanted, QSize window,
                                   const QList<ScreenArea>& screens);

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSize>

#include <functional>

namespace dorvane {

// Where a small window that belongs to the icon is put. Main thread only.
class WindowPlace {
public:
    virtual ~WindowPlace() = default;

    // The top left corner for a window of this size with its frame, on the screen, in
    // device-independent pixels.
    [[nodiscard]] virtual QPoint placeFor(QSize window) const = 0;

    // Whether nothing of ours is open there that a window would come to lie behind. What is open
    // makes way, within three seconds at most; `isFree` is called then. Only the last one that was
    // given is.
    [[nodiscard]] virtual bool makeWay(std::function<void()> isFree) = 0;
};

} // namespace dorvane

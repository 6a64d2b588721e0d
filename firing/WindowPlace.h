// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSize>

namespace dorvane {

// A place on the screen to hang a small window.
class WindowPlace {
public:
    virtual ~WindowPlace() = default;

    // The top left corner for a window of this size, in device-independent pixels.
    [[nodiscard]] virtual QPoint placeFor(QSize window) const = 0;
};

} // namespace dorvane

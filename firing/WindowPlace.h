// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSize>

namespace dorvane {

// Where a small window that belongs to the icon is put. Main thread only.
class WindowPlace {
public:
    virtual ~WindowPlace() = default;

    // The top left corner for a window of this size with its frame, on the screen, in
    // device-independent pixels.
    [[nodiscard]] virtual QPoint placeFor(QSize window) const = 0;
};

} // namespace dorvane

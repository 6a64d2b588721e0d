// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/ScreenAreas.h"

#include "platform/linux/tray/Xcb.h"

#include <QGuiApplication>
#include <QScreen>

namespace dorvane {

namespace {

// From pixels of the desktop, in which screens keep their origins.
QRect onScreen(const QRect& pixels, const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const qreal ratio = screen.devicePixelRatio();
    return {origin + (pixels.topLeft() - origin) / ratio, pixels.size() / ratio};
}

} // namespace

QList<ScreenArea> screenAreas() {
    const QList<QScreen*> screens = QGuiApplication::screens();
    // On X11 the area that panels leave free is told of a single screen only.
    xcb_connection_t* connection = screens.size() > 1 ? xcbConnection() : nullptr;
    const QList<QRect> docks = connection ? xcbDocks(connection) : QList<QRect>();
    QList<ScreenArea> areas;
    for (const QScreen* screen : screens) {
        ScreenArea area{screen->geometry(), screen->availableGeometry()};
        for (const QRect& dock : docks)
            area = withPanel(area, onScreen(dock, *screen));
        areas << area;
    }
    return areas;
}

} // namespace dorvane

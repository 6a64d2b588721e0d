// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/tray/IconPicture.h"

#include <QByteArray>

#include <vector>

namespace dorvane {

// (iiay) of org.kde.StatusNotifierItem: a picture in the panel's byte order.
struct NotifierPixmap {
    int width = 0; // pixels
    int height = 0;
    QByteArray pixels; // alpha, red, green, blue of each, not premultiplied
};
using NotifierPixmaps = std::vector<NotifierPixmap>;

[[nodiscard]] NotifierPixmaps pixmapsOf(const IconPicture& picture);

// As a(iiay).
void write(BusWriter& message, const NotifierPixmaps& pixmaps);

} // namespace dorvane

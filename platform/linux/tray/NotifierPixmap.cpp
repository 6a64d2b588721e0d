// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NotifierPixmap.h"

#include <QtEndian>

namespace dorvane {

namespace {

NotifierPixmap pixmapOf(const QImage& image) {
    const QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{straight.width(), straight.height(), {}};
    pixmap.pixels.resize(straight.sizeInBytes()); // lines of whole words have no gaps
    qToBigEndian<quint32>(straight.constBits(), straight.sizeInBytes() / 4, pixmap.pixels.data());
    return pixmap;
}

} // namespace

NotifierPixmaps pixmapsOf(const IconPicture& picture) {
    NotifierPixmaps pixmaps;
    for (const QImage& image : picture.images())
        pixmaps.push_back(pixmapOf(image));
    return pixmaps;
}

void write(BusWriter& message, const NotifierPixmaps& pixmaps) {
    message.container('a', "(iiay)", [&] {
        for (const NotifierPixmap& pixmap : pixmaps)
            message.container('r', "iiay", [&] {
                message.number(pixmap.width).number(pixmap.height).bytes(pixmap.pixels);
            });
    });
}

} // namespace dorvane

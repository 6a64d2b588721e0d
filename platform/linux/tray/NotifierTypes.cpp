// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NotifierTypes.h"

#include <QDBusMetaType>
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
    for (const QImage& image : {picture.single(), picture.doubled()})
        if (!image.isNull())
            pixmaps << pixmapOf(image);
    return pixmaps;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerNotifierTypes() {
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

} // namespace dorvane

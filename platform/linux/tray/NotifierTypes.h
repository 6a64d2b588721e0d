// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/IconPicture.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace dorvane {

// The structures of org.kde.StatusNotifierItem.

// (iiay): a picture in the panel's byte order.
struct NotifierPixmap {
    int width = 0; // pixels
    int height = 0;
    QByteArray pixels; // alpha, red, green, blue of each, not premultiplied
};
using NotifierPixmaps = QList<NotifierPixmap>;

// (sa(iiay)ss)
struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps icon;
    QString title;
    QString text;
};

[[nodiscard]] NotifierPixmaps pixmapsOf(const IconPicture& picture);

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip);

// Makes them known to Qt's D-Bus; before an object that uses them is exported.
void registerNotifierTypes();

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QVariantMap>

namespace dorvane {

// The structures of com.canonical.dbusmenu.

// (ia{sv}): an item with some of its properties.
struct DbusMenuItem {
    int number = 0;
    QVariantMap properties;
};

// (ias): an item with the names of properties that have gone back to their defaults.
struct DbusMenuDefaults {
    int number = 0;
    QStringList names;
};

// (ia{sv}av): an item with everything below it.
struct DbusMenuLayout {
    DbusMenuItem item;
    QList<DbusMenuLayout> children;
};

// (isvu): what the user did with an item.
struct DbusMenuEvent {
    int number = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuDefaults& defaults);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuDefaults& defaults);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuEvent& event);

// Makes them known to Qt's D-Bus; before an object that uses them is exported.
void registerDbusMenuTypes();

} // namespace dorvane

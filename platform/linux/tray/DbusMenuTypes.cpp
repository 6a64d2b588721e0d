// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/DbusMenuTypes.h"

#include <QDBusMetaType>

namespace dorvane {

QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuItem& item) {
    argument.beginStructure();
    argument << item.number << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuItem& item) {
    argument.beginStructure();
    argument >> item.number >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuDefaults& defaults) {
    argument.beginStructure();
    argument << defaults.number << defaults.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuDefaults& defaults) {
    argument.beginStructure();
    argument >> defaults.number >> defaults.names;
    argument.endStructure();
    return argument;
}

// The children are variants, because a signature cannot contain itself.
QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuLayout& layout) {
    argument.beginStructure();
    argument << layout.item.number << layout.item.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DbusMenuLayout& child : layout.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.item.number >> layout.item.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children << qdbus_cast<DbusMenuLayout>(child.variant());
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuEvent& event) {
    argument.beginStructure();
    argument << event.number << event.name << event.data << event.time;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuEvent& event) {
    argument.beginStructure();
    argument >> event.number >> event.name >> event.data >> event.time;
    argument.endStructure();
    return argument;
}

void registerDbusMenuTypes() {
    qDBusRegisterMetaType<DbusMenuItem>();
    qDBusRegisterMetaType<QList<DbusMenuItem>>();
    qDBusRegisterMetaType<DbusMenuDefaults>();
    qDBusRegisterMetaType<QList<DbusMenuDefaults>>();
    qDBusRegisterMetaType<DbusMenuLayout>();
    qDBusRegisterMetaType<DbusMenuEvent>();
    qDBusRegisterMetaType<QList<DbusMenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

} // namespace dorvane

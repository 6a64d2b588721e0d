// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace dorvane {

// Builds one keyed archive: a property list with a table of objects that refer to each other by
// index. Each object is a record of keyed values, each class a record that the objects share. The
// order of the table is that of the format's own archiver: an object, what it refers to, its class.
class KeyedArchiver {
public:
    // One object to be archived. `encode` writes its values with the members below, into the
    // archiver it is given. An object that comes up again (the same identity) is archived once.
    struct Object {
        const void* identity = nullptr;
        QStringList classes; // its own class first, then what that derives from
        std::function<void(KeyedArchiver& coder)> encode;
    };

    // The archive whose root object is a list of these objects.
    [[nodiscard]] static QVariant archivedList(const std::vector<Object>& objects);

    // The values of the object that is being encoded. A null string and an invalid date are nil.
    void encodeObject(const QString& text, const QString& key);
    void encodeObject(const QDateTime& date, const QString& key); // to the millisecond
    void encodeBool(bool value, const QString& key);
    void encodeInt(qint32 value, const QString& key);
    void encodeInteger(qint64 value, const QString& key);
    // Any value of a property list, in which each ArchivedObject becomes an object of the archive.
    void encodeOther(const QVariant& value, const QString& key);

private:
    KeyedArchiver();

    [[nodiscard]] PropertyListUid addList(const std::vector<Object>& objects);
    [[nodiscard]] PropertyListUid addObject(const Object& object);
    [[nodiscard]] PropertyListUid addText(const QString& text);
    [[nodiscard]] PropertyListUid addClass(const QStringList& classes);
    [[nodiscard]] PropertyListUid add(const QVariant& object);
    [[nodiscard]] QVariant attached(const QVariant& value);
    [[nodiscard]] PropertyListUid addDetached(const QVariant& object);

    // Takes the object's place in the table, has its values encoded, and adds its class.
    template<typename Encode>
    [[nodiscard]] PropertyListUid addRecord(const QStringList& classes, Encode encode);

    QVariantList m_objects;
    QVariantMap m_record; // of the object that is being encoded
    QHash<const void*, PropertyListUid> m_byIdentity;
    QHash<QString, PropertyListUid> m_texts;
    QHash<QString, PropertyListUid> m_classes; // by their own name
};

} // namespace dorvane

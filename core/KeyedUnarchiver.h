// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

#include <QDateTime>
#include <QSet>
#include <QString>

#include <optional>
#include <vector>

namespace dorvane {

// Reads a keyed archive. The data may come from anywhere: whatever is missing, of another type or
// refers to nothing reads as nil, NO or 0, and what is wrong with one object does not touch the
// others; but what is there and cannot be read is told from what is missing. References are
// followed one step at a time, so circles do no harm.
class KeyedUnarchiver {
public:
    // One object of the archive. Holds what it needs of it.
    class Object {
    public:
        // The same number for the same object of one archive.
        [[nodiscard]] quint64 identity() const { return m_identity; }

        // A null string or an invalid date for nil. Dates are in UTC, to the millisecond.
        [[nodiscard]] QString decodeString(const QString& key);
        [[nodiscard]] QDateTime decodeDate(const QString& key);
        [[nodiscard]] bool decodeBool(const QString& key);
        [[nodiscard]] qint32 decodeInt(const QString& key);
        [[nodiscard]] qint64 decodeInteger(const QString& key);

        // All values but those under these keys, as KeyedArchiver::encodeOther() takes them.
        [[nodiscard]] QVariantMap decodeOthers(const QSet<QString>& keys);

        // How many of the values that were asked for are there and cannot be read.
        [[nodiscard]] int unreadable() const { return m_unreadable; }

    private:
        friend class KeyedUnarchiver;
        Object(QVariantList objects, quint64 identity, QVariantMap record);

        [[nodiscard]] QVariant value(const QVariantMap& record, const QString& key);
        template<typename Value>
        [[nodiscard]] Value readOr(const std::optional<Value>& read, const QVariant& from);

        QVariantList m_objects;
        quint64 m_identity;
        QVariantMap m_record;
        int m_unreadable = 0;
    };

    explicit KeyedUnarchiver(const QVariant& archive);

    // The objects of a list, in order.
    struct List {
        std::vector<Object> objects;
        bool isComplete = true; // false when something was no object of the wanted class
    };

    // The objects of the class `className`, or of a class that derives from it, in the list that is
    // the archive's root object. Where there is no such list, an empty, incomplete one.
    [[nodiscard]] List decodeList(const QString& className) const;

private:
    [[nodiscard]] QVariantMap root() const;
    [[nodiscard]] bool isKindOf(const QVariantMap& record, const QString& className) const;

    QVariantMap m_top;
    QVariantList m_objects;
};

} // namespace dorvane

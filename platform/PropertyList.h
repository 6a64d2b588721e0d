// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QMetaType>
#include <QVariant>

#include <optional>

namespace dorvane {

// A property list is a QVariant tree of QVariantMap, QVariantList, QString, QByteArray, bool,
// qint64 (quint64 only for what qint64 cannot hold), double, QDateTime (UTC, to the millisecond)
// and, inside keyed archives, PropertyListUid. Other integers and lists of strings may be written.

// A reference to an object of a keyed archive: its index in the archive's object table.
struct PropertyListUid {
    quint64 value = 0;
    friend bool operator==(PropertyListUid, PropertyListUid) = default;
};

// Reads and writes the bytes of property lists. Stateless; any thread.
class PropertyListFormat {
public:
    virtual ~PropertyListFormat() = default;

    // Reads the binary or the XML format. Nothing for data that is neither, is cut short, or nests
    // deeper than any list of ours could.
    [[nodiscard]] virtual std::optional<QVariant> parse(QByteArrayView data) const = 0;

    // Writes the binary format. Nothing when the tree holds a value of another type.
    [[nodiscard]] virtual std::optional<QByteArray> binary(const QVariant& root) const = 0;
};

} // namespace dorvane

Q_DECLARE_METATYPE(dorvane::PropertyListUid)

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/LibplistFormat.h"

#include "platform/linux/preferences/PropertyListGuard.h"

#include <QDateTime>
#include <QtEndian>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>

namespace dorvane {

namespace {

struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};
struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using Node = std::unique_ptr<void, FreeNode>;
using Text = std::unique_ptr<char, FreeMemory>;

constexpr QLatin1String uidKey("CF$UID");

// The accessors of libplist 2.2 cut dates to 32 bits and cannot tell a negative integer from a
// huge one; its binary format has both right. So those values go through the bytes of a list that
// holds nothing else.

constexpr qsizetype firstObject = 8; // after "bplist00"
constexpr char dateMarker = 0x33;
constexpr char wideIntegerMarker = 0x14; // 16 bytes, of which the first 8 are the sign's

QByteArray bytesOf(plist_t node) {
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(node, &bytes, &length);
    const Text owned(bytes);
    return QByteArray(bytes, static_cast<qsizetype>(length));
}

QByteArray bigEndian(quint64 value) {
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

Node nodeOfObject(const QByteArray& object) {
    const QByteArray offsets(1, static_cast<char>(firstObject));
    const QByteArray sizes = QByteArray(6, '\0') + QByteArray(2, '\1');
    const QByteArray list = "bplist00" + object + offsets + sizes + bigEndian(1) + bigEndian(0) +
                            bigEndian(static_cast<quint64>(firstObject + object.size()));
    plist_t node = nullptr;
    plist_from_bin(list.constData(), static_cast<uint32_t>(list.size()), &node);
    return Node(node);
}

constexpr double farthest = 7990.0 * 365 * 86400; // seconds from the epoch, to the year 9985

const QDateTime& epoch() {
    static const QDateTime start(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return start;
}

// -- Reading ------------------------------------------------------------------------------------

QVariant valueOf(plist_t node);

QVariant integerOf(plist_t node) {
    uint64_t value = 0;
    plist_get_uint_val(node, &value);
    const auto asSigned = static_cast<qint64>(value);
    if (asSigned < 0 && bytesOf(node).at(firstObject) == wideIntegerMarker)
        return quint64(value);
    return asSigned;
}

QVariant dateOf(plist_t node) {
    const QByteArray bytes = bytesOf(node);
    const auto number = qFromBigEndian<quint64>(bytes.constData() + firstObject + 1);
    // What lies beyond all calendars, or is no number, becomes a date that can be written again.
    const double seconds = std::fmin(std::fmax(std::bit_cast<double>(number), -farthest), farthest);
    return epoch().addMSecs(std::llround(seconds * 1000));
}

QVariant dictionaryOf(plist_t node) {
    QVariantMap map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const std::unique_ptr<void, FreeMemory> ownedIterator(iterator);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        const Text ownedKey(key);
        if (!value)
            break;
        map.insert(QString::fromUtf8(key), valueOf(value));
    }
    // The XML format has no other way to write a reference.
    const QVariant uid = map.size() == 1 ? map.value(uidKey) : QVariant();
    if (uid.typeId() == QMetaType::LongLong && uid.toLongLong() >= 0)
        return QVariant::fromValue(PropertyListUid{uid.toULongLong()});
    return map;
}

QVariant arrayOf(plist_t node) {
    QVariantList list;
    list.reserve(static_cast<qsizetype>(plist_array_get_size(node)));
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const std::unique_ptr<void, FreeMemory> ownedIterator(iterator);
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, iterator, &item);
        if (!item)
            break;
        list.append(valueOf(item));
    }
    return list;
}

// As deep as the list nests, which the guard has bounded.
QVariant valueOf(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
        return plist_bool_val_is_true(node) != 0;
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING: {
        uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        return QString::fromUtf8(text, static_cast<qsizetype>(length));
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char* bytes = plist_get_data_ptr(node, &length);
        return QByteArray(bytes, static_cast<qsizetype>(length));
    }
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return QVariant::fromValue(PropertyListUid{value});
    }
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        return {};
    }
}

// -- Writing ------------------------------------------------------------------------------------

Node nodeOf(const QVariant& value);

Node nodeOfMap(const QVariantMap& map) {
    Node node(plist_new_dict());
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        Node child = nodeOf(entry.value());
        if (!child)
            return nullptr;
        plist_dict_set_item(node.get(), entry.key().toUtf8().constData(), child.release());
    }
    return node;
}

Node nodeOfList(const QVariantList& list) {
    Node node(plist_new_array());
    for (const QVariant& item : list) {
        Node child = nodeOf(item);
        if (!child)
            return nullptr;
        plist_array_append_item(node.get(), child.release());
    }
    return node;
}

Node nodeOfDate(const QDateTime& date) {
    if (!date.isValid())
        return nullptr;
    const double seconds = static_cast<double>(epoch().msecsTo(date)) / 1000;
    return nodeOfObject(dateMarker + bigEndian(std::bit_cast<quint64>(seconds)));
}

Node nodeOfUnsigned(quint64 value) {
    if (value <= quint64(std::numeric_limits<qint64>::max()))
        return Node(plist_new_uint(value));
    return nodeOfObject(wideIntegerMarker + bigEndian(0) + bigEndian(value));
}

// Null for a value that property lists do not have.
Node nodeOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return Node(plist_new_bool(value.toBool() ? 1 : 0));
    case QMetaType::Int:
    case QMetaType::LongLong:
        return Node(plist_new_uint(static_cast<uint64_t>(value.toLongLong())));
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return nodeOfUnsigned(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return Node(plist_new_real(value.toDouble()));
    case QMetaType::QString:
        return Node(plist_new_string(value.toString().toUtf8().constData()));
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return Node(plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size())));
    }
    case QMetaType::QDateTime:
        return nodeOfDate(value.toDateTime());
    case QMetaType::QVariantMap:
        return nodeOfMap(value.toMap());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return nodeOfList(value.toList());
    default:
        if (value.typeId() == qMetaTypeId<PropertyListUid>())
            return Node(plist_new_uid(value.value<PropertyListUid>().value));
        return nullptr;
    }
}

} // namespace

std::optional<QVariant> LibplistFormat::parse(QByteArrayView data) const {
    if (!isSafePropertyList(data))
        return std::nullopt;
    plist_t parsed = nullptr;
    const auto read = isBinaryPropertyList(data) ? plist_from_bin : plist_from_xml;
    read(data.data(), static_cast<uint32_t>(data.size()), &parsed);
    const Node root(parsed);
    if (!root)
        return std::nullopt;
    return valueOf(root.get());
}

std::optional<QByteArray> LibplistFormat::binary(const QVariant& root) const {
    const Node node = nodeOf(root);
    if (!node)
        return std::nullopt;
    const QByteArray bytes = bytesOf(node.get());
    if (bytes.isEmpty())
        return std::nullopt;
    return bytes;
}

} // namespace dorvane

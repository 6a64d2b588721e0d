// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListFormats.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <limits>
#include <vector>

namespace dorvane {

namespace {

constexpr QByteArrayView magic("bplist00");
constexpr quint64 trailerSize = 32;

// The upper half of the byte that an object begins with.
enum Type : quint8 {
    Constant = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Bytes = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Uid = 0x8,
    Array = 0xA,
    Dictionary = 0xD
};

constexpr quint8 countFollows = 0xF; // in the lower half: an integer object follows
constexpr quint8 falseValue = 0x8;
constexpr quint8 trueValue = 0x9;

// Spells a list out from its root, every reference on its own, and stops at the first thing that is
// wrong or too much.
class Reader {
public:
    explicit Reader(QByteArrayView data)
        // Every node is reached through a reference of at least one byte, so that a list has more
        // nodes than bytes only if it repeats whole branches.
        : m_data(data), m_mostNodes(std::min(PropertyListLimits::nodes, quint64(data.size()))) {}

    [[nodiscard]] std::optional<QVariant> read() {
        return readTrailer() ? value(m_root, 0) : std::nullopt;
    }

private:
    struct Object {
        quint8 type = 0;
        quint64 count = 0;  // the lower half of the first byte, or the count that follows it
        quint64 offset = 0; // of what comes after
    };

    // The bytes up to `end` hold `length` more after `offset`.
    [[nodiscard]] static bool fits(quint64 offset, quint64 length, quint64 end) {
        return offset <= end && length <= end - offset;
    }
    // The object has `length` bytes of its own, and all together are not too many.
    [[nodiscard]] bool takes(const Object& object, quint64 length) {
        if (!fits(object.offset, length, m_offsetTable))
            return false;
        m_bytes += length;
        return m_bytes <= quint64(PropertyListLimits::bytes);
    }
    [[nodiscard]] QByteArrayView view(const Object& object, quint64 length) const {
        return m_data.sliced(qsizetype(object.offset), qsizetype(length));
    }
    [[nodiscard]] quint8 byte(quint64 offset) const { return quint8(m_data[qsizetype(offset)]); }
    // A number of `size` bytes, most significant first; of more than eight, the last eight.
    [[nodiscard]] quint64 number(quint64 offset, quint64 size) const {
        quint64 value = 0;
        for (quint64 i = 0; i < size; ++i)
            value = value << 8 | byte(offset + i);
        return value;
    }
    [[nodiscard]] quint64 reference(const Object& object, quint64 position) const {
        return number(object.offset + position * m_referenceSize, m_referenceSize);
    }

    bool readTrailer() {
        const auto size = quint64(m_data.size());
        if (size < quint64(magic.size()) + trailerSize)
            return false;
        const quint64 trailer = size - trailerSize;
        m_offsetSize = byte(trailer + 6);
        m_referenceSize = byte(trailer + 7);
        m_objectCount = number(trailer + 8, 8);
        m_root = number(trailer + 16, 8);
        m_offsetTable = number(trailer + 24, 8);
        return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 &&
               m_referenceSize <= 8 && m_objectCount <= size &&
               m_offsetTable >= quint64(magic.size()) &&
               fits(m_offsetTable, m_objectCount * m_offsetSize, trailer);
    }

    std::optional<Object> object(quint64 index) const {
        if (index >= m_objectCount)
            return std::nullopt;
        const quint64 offset = number(m_offsetTable + index * m_offsetSize, m_offsetSize);
        if (offset < quint64(magic.size()) || offset >= m_offsetTable)
            return std::nullopt;
        const quint8 marker = byte(offset);
        Object object{quint8(marker >> 4), marker & 0xFU, offset + 1};
        const bool isCounted = object.type >= Bytes && object.type != Uid;
        if (!isCounted || object.count != countFollows)
            return object;
        if (!fits(object.offset, 1, m_offsetTable) || byte(object.offset) >> 4 != Integer)
            return std::nullopt;
        const quint64 size = quint64(1) << (byte(object.offset) & 0xFU);
        if (size > 8 || !fits(object.offset + 1, size, m_offsetTable))
            return std::nullopt;
        object.count = number(object.offset + 1, size);
        object.offset += 1 + size;
        // Nothing has more parts than the list has bytes.
        if (object.count > quint64(m_data.size()))
            return std::nullopt;
        return object;
    }

    std::optional<QVariant> value(quint64 index, int depth) {
        const auto found = object(index);
        if (!found || depth > PropertyListLimits::depth || ++m_nodes > m_mostNodes)
            return std::nullopt;
        switch (found->type) {
        case Array:
            return array(*found, depth);
        case Dictionary:
            return dictionary(*found, depth);
        default:
            return scalar(*found);
        }
    }

    std::optional<QVariant> array(const Object& object, int depth) {
        if (!fits(object.offset, object.count * m_referenceSize, m_offsetTable))
            return std::nullopt;
        QVariantList list;
        for (quint64 i = 0; i < object.count; ++i) {
            const auto item = value(reference(object, i), depth + 1);
            if (!item)
                return std::nullopt;
            list.append(*item);
        }
        return list;
    }

    // All keys come first, then all values.
    std::optional<QVariant> dictionary(const Object& object, int depth) {
        if (!fits(object.offset, object.count * 2 * m_referenceSize, m_offsetTable))
            return std::nullopt;
        QVariantMap map;
        for (quint64 i = 0; i < object.count; ++i) {
            const auto key = this->object(reference(object, i));
            const auto name = key && ++m_nodes <= m_mostNodes ? text(*key) : std::nullopt;
            const auto item =
                name ? value(reference(object, object.count + i), depth + 1) : std::nullopt;
            if (!item)
                return std::nullopt;
            map.insert(*name, *item);
        }
        return propertyListDictionary(map);
    }

    std::optional<QVariant> scalar(const Object& object) {
        switch (object.type) {
        case Constant:
            if (object.count != falseValue && object.count != trueValue)
                return std::nullopt;
            return object.count == trueValue;
        case Integer:
            return integer(object);
        case Real:
        case Date:
            return real(object);
        case Bytes:
            if (!takes(object, object.count))
                return std::nullopt;
            return view(object, object.count).toByteArray();
        case Uid: // a reference inside a keyed archive
            if (object.count >= 8 || !takes(object, object.count + 1))
                return std::nullopt;
            return QVariant::fromValue(PropertyListUid{number(object.offset, object.count + 1)});
        default:
            return text(object);
        }
    }

    // Of 1, 2 and 4 bytes without a sign, of 8 with one; of 16 what fits 64 bits.
    std::optional<QVariant> integer(const Object& object) const {
        const quint64 size = quint64(1) << object.count;
        if (size > 16 || !fits(object.offset, size, m_offsetTable))
            return std::nullopt;
        const quint64 value = number(object.offset, size);
        if (size < 16)
            return qint64(value);
        const quint64 high = number(object.offset, 8);
        const bool isNegative = value > quint64(std::numeric_limits<qint64>::max());
        if (high == 0 && isNegative)
            return value;
        if (high != (isNegative ? ~quint64(0) : 0))
            return std::nullopt;
        return qint64(value);
    }

    std::optional<QVariant> real(const Object& object) const {
        const quint64 size = quint64(1) << object.count;
        const bool isSingle = size == 4 && object.type == Real;
        if ((size != 8 && !isSingle) || !fits(object.offset, size, m_offsetTable))
            return std::nullopt;
        const quint64 bits = number(object.offset, size);
        if (isSingle)
            return double(std::bit_cast<float>(quint32(bits)));
        const auto value = std::bit_cast<double>(bits);
        return object.type == Date ? QVariant(propertyListDate(value)) : QVariant(value);
    }

    std::optional<QString> text(const Object& object) {
        if (object.type == Ascii && takes(object, object.count))
            return QString::fromUtf8(view(object, object.count));
        if (object.type != Utf16 || !takes(object, object.count * 2))
            return std::nullopt;
        QString text(qsizetype(object.count), Qt::Uninitialized);
        qFromBigEndian<char16_t>(view(object, object.count * 2).data(), text.size(), text.data());
        return text;
    }

    QByteArrayView m_data;
    quint64 m_mostNodes;
    quint64 m_offsetSize = 0;
    quint64 m_referenceSize = 0;
    quint64 m_objectCount = 0;
    quint64 m_root = 0;
    quint64 m_offsetTable = 0; // objects end here
    quint64 m_nodes = 0;
    quint64 m_bytes = 0;
};

// -- Writing ------------------------------------------------------------------------------------

// The number, most significant byte first.
void put(QByteArray& out, quint64 value, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        out.append(char(value >> shift));
}

// The bytes that a number without a sign takes: 1, 2, 4 or 8.
int sizeOf(quint64 value) {
    return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

void putMarker(QByteArray& out, Type type, int count) {
    out.append(char(type << 4 | count));
}

void putInteger(QByteArray& out, quint64 value, int size) {
    putMarker(out, Integer, std::countr_zero(unsigned(size)));
    put(out, value, size);
}

void putSigned(QByteArray& out, qint64 value) {
    putInteger(out, quint64(value), value < 0 ? 8 : sizeOf(quint64(value)));
}

void putUnsigned(QByteArray& out, quint64 value) {
    if (value <= quint64(std::numeric_limits<qint64>::max()))
        return putSigned(out, qint64(value));
    putMarker(out, Integer, 4);
    put(out, 0, 8);
    put(out, value, 8);
}

void putCounted(QByteArray& out, Type type, qsizetype count) {
    putMarker(out, type, int(std::min<qsizetype>(count, countFollows)));
    if (count >= countFollows)
        putInteger(out, quint64(count), sizeOf(quint64(count)));
}

void putReal(QByteArray& out, Type type, double value) {
    putMarker(out, type, 3);
    put(out, std::bit_cast<quint64>(value), 8);
}

void putText(QByteArray& out, const QString& text) {
    const bool isAscii = std::all_of(text.cbegin(), text.cend(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    putCounted(out, isAscii ? Ascii : Utf16, text.size());
    for (const QChar character : text)
        put(out, character.unicode(), isAscii ? 1 : 2);
}

// False for a value that property lists do not have, and for one that is no scalar.
bool putScalar(QByteArray& out, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        putMarker(out, Constant, value.toBool() ? trueValue : falseValue);
        return true;
    case QMetaType::Int:
    case QMetaType::LongLong:
        putSigned(out, value.toLongLong());
        return true;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        putUnsigned(out, value.toULongLong());
        return true;
    case QMetaType::Float:
    case QMetaType::Double:
        putReal(out, Real, value.toDouble());
        return true;
    case QMetaType::QDateTime:
        putReal(out, Date, double(propertyListEpoch().msecsTo(value.toDateTime())) / 1000);
        return value.toDateTime().isValid();
    case QMetaType::QString:
        putText(out, value.toString());
        return true;
    case QMetaType::QByteArray:
        putCounted(out, Bytes, value.toByteArray().size());
        out.append(value.toByteArray());
        return true;
    default:
        if (value.typeId() != qMetaTypeId<PropertyListUid>())
            return false;
        const quint64 uid = value.value<PropertyListUid>().value;
        putMarker(out, Uid, sizeOf(uid) - 1);
        put(out, uid, sizeOf(uid));
        return true;
    }
}

class Writer {
public:
    // Takes a value with all that is in it. False when one of them cannot be written.
    [[nodiscard]] bool take(const QVariant& root) { return add(root).has_value(); }

    [[nodiscard]] QByteArray bytes() const {
        const int referenceSize = sizeOf(m_objects.size());
        QByteArray list = magic.toByteArray();
        std::vector<quint64> offsets;
        for (const Object& object : m_objects) {
            offsets.push_back(quint64(list.size()));
            list += object.bytes;
            for (const quint64 reference : object.references)
                put(list, reference, referenceSize);
        }
        const auto offsetTable = quint64(list.size());
        const int offsetSize = sizeOf(offsetTable);
        for (const quint64 offset : offsets)
            put(list, offset, offsetSize);
        list += QByteArray(6, '\0') + char(offsetSize) + char(referenceSize);
        for (const quint64 number : {quint64(m_objects.size()), quint64(0), offsetTable})
            put(list, number, 8);
        return list;
    }

private:
    struct Object {
        QByteArray bytes; // of a container without the references that follow
        std::vector<quint64> references;
    };

    // The number of the value's object. Equal scalars share one.
    [[nodiscard]] std::optional<quint64> add(const QVariant& value) {
        if (value.typeId() == QMetaType::QVariantMap) {
            const QVariantMap map = value.toMap();
            return addContainer(Dictionary, map.keys(), map.values());
        }
        if (value.typeId() == QMetaType::QVariantList || value.typeId() == QMetaType::QStringList)
            return addContainer(Array, {}, value.toList());
        QByteArray bytes;
        if (!putScalar(bytes, value))
            return std::nullopt;
        return addScalar(bytes);
    }

    [[nodiscard]] quint64 addScalar(const QByteArray& bytes) {
        const auto known = m_scalars.constFind(bytes);
        if (known != m_scalars.cend())
            return *known;
        m_scalars.insert(bytes, m_objects.size());
        m_objects.push_back({bytes, {}});
        return m_objects.size() - 1;
    }

    [[nodiscard]] std::optional<quint64> addContainer(Type type, const QStringList& keys,
                                                      const QVariantList& values) {
        const quint64 index = m_objects.size();
        m_objects.emplace_back();
        putCounted(m_objects.back().bytes, type, values.size());
        std::vector<quint64> references;
        for (const QString& key : keys) {
            QByteArray bytes;
            putText(bytes, key);
            references.push_back(addScalar(bytes));
        }
        for (const QVariant& value : values) {
            const auto reference = add(value);
            if (!reference)
                return std::nullopt;
            references.push_back(*reference);
        }
        m_objects[index].references = std::move(references);
        return index;
    }

    std::vector<Object> m_objects;
    QHash<QByteArray, quint64> m_scalars;
};

} // namespace

bool isBinaryPropertyList(QByteArrayView data) {
    return data.startsWith(magic);
}

std::optional<QVariant> readBinaryPropertyList(QByteArrayView data) {
    return Reader(data).read();
}

std::optional<QByteArray> writeBinaryPropertyList(const QVariant& root) {
    Writer writer;
    if (!writer.take(root))
        return std::nullopt;
    return writer.bytes();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListGuard.h"

#include <QtEndian>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace dorvane {

namespace {

constexpr int deepest = 64;
// Ten thousand alarms are less than a million nodes and about five million bytes of text.
constexpr quint64 mostNodes = 2'000'000;
constexpr quint64 mostBytes = 64 * 1024 * 1024;

// Walks a binary list from its root the way a reader would spell it out, every reference on its
// own, and stops at the first thing that is wrong or too much. A list that contains itself ends at
// the limit of depth.
class BinaryWalk {
public:
    explicit BinaryWalk(QByteArrayView data)
        // Every node is reached through a reference of at least one byte, so that a list has more
        // nodes than bytes only if it repeats whole branches.
        : m_data(data), m_mostNodes(std::min(mostNodes, static_cast<quint64>(data.size()))) {}

    [[nodiscard]] bool isSafe() { return readTrailer() && visit(m_root, 0); }

private:
    struct Header {
        quint8 type = 0;    // the upper half of the marker byte
        quint64 count = 0;  // its lower half, or the count that follows it
        quint64 offset = 0; // of what comes after
    };

    [[nodiscard]] bool readTrailer();
    [[nodiscard]] bool visit(quint64 index, int depth);
    [[nodiscard]] bool visitReferences(const Header& object, int depth);
    [[nodiscard]] bool isKey(const Header& object) const;
    [[nodiscard]] bool isScalar(const Header& object);
    [[nodiscard]] bool takeBytes(const Header& object, quint64 length);
    [[nodiscard]] std::optional<Header> header(quint64 index) const;

    // The bytes up to `end` hold `length` more after `offset`.
    [[nodiscard]] static bool fits(quint64 offset, quint64 length, quint64 end) {
        return offset <= end && length <= end - offset;
    }
    [[nodiscard]] quint8 byte(quint64 offset) const {
        return static_cast<quint8>(m_data[static_cast<qsizetype>(offset)]);
    }
    // A number of `size` bytes, most significant first.
    [[nodiscard]] quint64 number(quint64 offset, quint64 size) const {
        quint64 value = 0;
        for (quint64 i = 0; i < size; ++i)
            value = value << 8 | byte(offset + i);
        return value;
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

constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;

bool BinaryWalk::readTrailer() {
    const auto size = static_cast<quint64>(m_data.size());
    if (size < headerSize + trailerSize)
        return false;
    const quint64 trailer = size - trailerSize;
    m_offsetSize = byte(trailer + 6);
    m_referenceSize = byte(trailer + 7);
    m_objectCount = number(trailer + 8, 8);
    m_root = number(trailer + 16, 8);
    m_offsetTable = number(trailer + 24, 8);
    return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 && m_referenceSize <= 8 &&
           m_objectCount <= size && m_offsetTable >= headerSize &&
           fits(m_offsetTable, m_objectCount * m_offsetSize, trailer);
}

std::optional<BinaryWalk::Header> BinaryWalk::header(quint64 index) const {
    if (index >= m_objectCount)
        return std::nullopt;
    const quint64 offset = number(m_offsetTable + index * m_offsetSize, m_offsetSize);
    if (offset < headerSize || offset >= m_offsetTable)
        return std::nullopt;
    const quint8 marker = byte(offset);
    Header object{static_cast<quint8>(marker >> 4), marker & 0xFU, offset + 1};
    const bool countFollows = object.type >= 0x4 && object.type != 0x8 && object.count == 0xF;
    if (!countFollows)
        return object;
    if (!fits(object.offset, 1, m_offsetTable) || byte(object.offset) >> 4 != 0x1)
        return std::nullopt;
    const quint64 countSize = quint64(1) << (byte(object.offset) & 0xFU);
    if (countSize > 8 || !fits(object.offset + 1, countSize, m_offsetTable))
        return std::nullopt;
    object.count = number(object.offset + 1, countSize);
    object.offset += 1 + countSize;
    return object;
}

bool BinaryWalk::visit(quint64 index, int depth) {
    const auto object = header(index);
    if (!object || depth > deepest || ++m_nodes > m_mostNodes)
        return false;
    const bool isContainer = object->type == 0xA || object->type == 0xD;
    return isContainer ? visitReferences(*object, depth) : isScalar(*object);
}

bool BinaryWalk::visitReferences(const Header& object, int depth) {
    const bool isDictionary = object.type == 0xD; // all keys come first, then all values
    if (object.count > mostNodes)
        return false;
    const quint64 references = isDictionary ? object.count * 2 : object.count;
    if (!fits(object.offset, references * m_referenceSize, m_offsetTable))
        return false;
    for (quint64 i = 0; i < references; ++i) {
        const quint64 index = number(object.offset + i * m_referenceSize, m_referenceSize);
        if (isDictionary && i < object.count) {
            const auto key = header(index);
            if (!key || !isKey(*key))
                return false;
        }
        if (!visit(index, depth + 1))
            return false;
    }
    return true;
}

// A text without NUL, at which libplist would end the program.
bool BinaryWalk::isKey(const Header& object) const {
    const bool isWide = object.type == 0x6;
    const quint64 width = isWide ? 2 : 1;
    if ((object.type != 0x5 && !isWide) || object.count > mostBytes ||
        !fits(object.offset, object.count * width, m_offsetTable))
        return false;
    for (quint64 i = 0; i < object.count; ++i)
        if (number(object.offset + i * width, width) == 0)
            return false;
    return true;
}

bool BinaryWalk::isScalar(const Header& object) {
    switch (object.type) {
    case 0x0: // false and true; nothing else of this kind is a value
        return object.count == 0x8 || object.count == 0x9;
    case 0x1: // integers of 1 to 16 bytes
        return object.count <= 4 && takeBytes(object, quint64(1) << object.count);
    case 0x2: // 32 and 64 bits
        return (object.count == 2 || object.count == 3) &&
               takeBytes(object, quint64(1) << object.count);
    case 0x3: // a date
        return object.count == 3 && takeBytes(object, 8);
    case 0x4: // bytes
    case 0x5: // ASCII
        return takeBytes(object, object.count);
    case 0x6: // UTF-16
        return object.count <= mostBytes && takeBytes(object, object.count * 2);
    case 0x8: // a reference inside a keyed archive
        return object.count < 8 && takeBytes(object, object.count + 1);
    default:
        return false;
    }
}

bool BinaryWalk::takeBytes(const Header& object, quint64 length) {
    if (!fits(object.offset, length, m_offsetTable))
        return false;
    m_bytes += length;
    return m_bytes <= mostBytes;
}

// Well-formed XML has no cycles, and without entities of its own it is as large as it looks.
bool isSafeXml(QByteArrayView data) {
    QXmlStreamReader reader(QByteArray::fromRawData(data.data(), data.size()));
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            if (!reader.entityDeclarations().isEmpty())
                return false;
            break;
        case QXmlStreamReader::StartElement:
            if (depth == 0 && reader.name() != QLatin1String("plist"))
                return false;
            if (++depth > deepest)
                return false;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return !reader.hasError();
}

} // namespace

bool isBinaryPropertyList(QByteArrayView data) {
    return data.startsWith(QByteArrayView("bplist00"));
}

bool isSafePropertyList(QByteArrayView data) {
    if (static_cast<quint64>(data.size()) > mostBytes)
        return false;
    return isBinaryPropertyList(data) ? BinaryWalk(data).isSafe() : isSafeXml(data);
}

} // namespace dorvane

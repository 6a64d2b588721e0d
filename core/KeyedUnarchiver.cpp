// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeyedUnarchiver.h"

#include "core/ArchivedObject.h"
#include "core/KeyedArchiveNames.h"

#include <cmath>
#include <limits>
#include <optional>

namespace dorvane {

namespace {

bool isReference(const QVariant& value) {
    return value.typeId() == qMetaTypeId<PropertyListUid>();
}

bool refersToNothing(const QVariantList& objects, const QVariant& value) {
    return isReference(value) &&
           value.value<PropertyListUid>().value >= static_cast<quint64>(objects.size());
}

// What a value refers to, or the value itself where it is no reference. Invalid for nil and for a
// reference to nothing.
QVariant resolved(const QVariantList& objects, const QVariant& value) {
    if (!isReference(value))
        return value;
    const quint64 index = value.value<PropertyListUid>().value;
    if (index == 0 || refersToNothing(objects, value))
        return {};
    return objects.at(static_cast<qsizetype>(index));
}

// Takes what a value refers to along. Bounded: archives may contain themselves.
class Detaching {
public:
    explicit Detaching(const QVariantList& objects) : m_objects(objects) {}

    [[nodiscard]] QVariant detached(const QVariant& value, int depth = 0) {
        constexpr int deepest = 16;
        m_isWhole =
            m_isWhole && depth <= deepest && --m_left >= 0 && !refersToNothing(m_objects, value);
        if (!m_isWhole)
            return {};
        if (const QVariant object = resolved(m_objects, value); isReference(value))
            return object.isValid()
                       ? QVariant::fromValue(ArchivedObject{detached(object, depth + 1)})
                       : QVariant::fromValue(PropertyListUid{0});
        if (value.typeId() == QMetaType::QVariantMap) {
            QVariantMap map = value.toMap();
            for (QVariant& each : map)
                each = detached(each, depth + 1);
            return map;
        }
        if (value.typeId() == QMetaType::QVariantList) {
            QVariantList list = value.toList();
            for (QVariant& each : list)
                each = detached(each, depth + 1);
            return list;
        }
        return value;
    }

    [[nodiscard]] bool isWhole() const { return m_isWhole; }

private:
    const QVariantList& m_objects;
    int m_left = 1000;
    bool m_isWhole = true;
};

std::optional<double> realOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::LongLong:
        return value.toDouble();
    default:
        return std::nullopt;
    }
}

QDateTime dateOf(double secondsSinceEpoch) {
    constexpr double mostSeconds = 1.0e12; // so that milliseconds fit in any case
    if (!(std::abs(secondsSinceEpoch) < mostSeconds))
        return {};
    return archive::epoch().addMSecs(std::llround(secondsSinceEpoch * 1000));
}

// Judged as it will be stored, to the millisecond: what is read once is read again.
bool hasYearOfFourDigits(const QDateTime& date) {
    return date.isValid() && date.date().year() > 0 && date.date().year() < 9999;
}

std::optional<qint64> integerOf(const QVariant& value) {
    if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Bool)
        return value.toLongLong();
    constexpr double limit = 9.0e18;
    const auto real = realOf(value);
    return real && std::abs(*real) < limit ? std::optional(static_cast<qint64>(*real))
                                           : std::nullopt;
}

std::optional<QString> textOf(const QVariant& value) {
    if (value.typeId() == QMetaType::QByteArray)
        return QString::fromUtf8(value.toByteArray());
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

} // namespace

KeyedUnarchiver::Object::Object(QVariantList objects, quint64 identity, QVariantMap record)
    : m_objects(std::move(objects)), m_identity(identity), m_record(std::move(record)) {}

QVariant KeyedUnarchiver::Object::value(const QVariantMap& record, const QString& key) {
    const QVariant found = record.value(key);
    m_unreadable += refersToNothing(m_objects, found) ? 1 : 0;
    return resolved(m_objects, found);
}

template<typename Value>
Value KeyedUnarchiver::Object::readOr(const std::optional<Value>& read, const QVariant& from) {
    m_unreadable += from.isValid() && !read ? 1 : 0;
    return read.value_or(Value());
}

QString KeyedUnarchiver::Object::decodeString(const QString& key) {
    const QVariant found = value(m_record, key);
    const bool isRecord = found.typeId() == QMetaType::QVariantMap;
    return readOr(textOf(isRecord ? value(found.toMap(), archive::text) : found), found);
}

QDateTime KeyedUnarchiver::Object::decodeDate(const QString& key) {
    const QVariant found = value(m_record, key);
    QDateTime date;
    if (found.typeId() == QMetaType::QDateTime)
        date = found.toDateTime();
    else if (const auto seconds = realOf(value(found.toMap(), archive::dateTime)))
        date = dateOf(*seconds);
    return readOr(hasYearOfFourDigits(date) ? std::optional(date) : std::nullopt, found);
}

bool KeyedUnarchiver::Object::decodeBool(const QString& key) {
    return decodeInteger(key) != 0;
}

qint32 KeyedUnarchiver::Object::decodeInt(const QString& key) {
    const qint64 integer = decodeInteger(key);
    using Limits = std::numeric_limits<qint32>;
    if (integer >= Limits::min() && integer <= Limits::max())
        return static_cast<qint32>(integer);
    ++m_unreadable;
    return 0;
}

qint64 KeyedUnarchiver::Object::decodeInteger(const QString& key) {
    const QVariant found = value(m_record, key);
    return readOr(integerOf(found), found);
}

QVariantMap KeyedUnarchiver::Object::decodeOthers(const QSet<QString>& keys) {
    QVariantMap others;
    for (auto entry = m_record.cbegin(); entry != m_record.cend(); ++entry) {
        if (keys.contains(entry.key()) || entry.key() == archive::classOf)
            continue;
        Detaching detaching(m_objects);
        const QVariant value = detaching.detached(entry.value());
        if (detaching.isWhole())
            others.insert(entry.key(), value);
        else
            ++m_unreadable;
    }
    return others;
}

KeyedUnarchiver::KeyedUnarchiver(const QVariant& archive)
    : m_top(archive.toMap().value(archive::top).toMap())
    , m_objects(archive.toMap().value(archive::objects).toList()) {}

// Under another key where it is the only object at the top.
QVariantMap KeyedUnarchiver::root() const {
    const bool isElsewhere = m_top.size() == 1 && !m_top.contains(archive::root);
    const QVariant top = isElsewhere ? m_top.first() : m_top.value(archive::root);
    return resolved(m_objects, top).toMap();
}

bool KeyedUnarchiver::isKindOf(const QVariantMap& record, const QString& className) const {
    const QVariantMap itsClass = resolved(m_objects, record.value(archive::classOf)).toMap();
    return itsClass.value(archive::className) == className ||
           itsClass.value(archive::classes).toList().contains(className);
}

KeyedUnarchiver::List KeyedUnarchiver::decodeList(const QString& className) const {
    // Lists of all classes, mutable or not, keep their elements under the same key.
    const QVariant elements = root().value(archive::listObjects);
    if (elements.typeId() != QMetaType::QVariantList)
        return {.objects = {}, .isComplete = false};
    List list;
    const QVariantList references = elements.toList();
    for (const QVariant& element : references) {
        const QVariantMap record = resolved(m_objects, element).toMap();
        if (isReference(element) && isKindOf(record, className))
            list.objects.push_back(
                Object(m_objects, element.value<PropertyListUid>().value, record));
    }
    list.isComplete = references.size() == static_cast<qsizetype>(list.objects.size());
    return list;
}

} // namespace dorvane

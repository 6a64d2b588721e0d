// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeyedUnarchiver.h"

#include "core/KeyedArchiveNames.h"

#include <cmath>
#include <limits>
#include <optional>

namespace dorvane {

namespace {

bool isReference(const QVariant& value) {
    return value.typeId() == qMetaTypeId<PropertyListUid>();
}

// What a value refers to, or the value itself where it is no reference. Invalid for nil and for a
// reference to nothing.
QVariant resolved(const QVariantList& objects, const QVariant& value) {
    if (!isReference(value))
        return value;
    const quint64 index = value.value<PropertyListUid>().value;
    if (index == 0 || index >= static_cast<quint64>(objects.size()))
        return {};
    return objects.at(static_cast<qsizetype>(index));
}

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
    constexpr double mostSeconds = 7990.0 * 365 * 86400; // about the year 9985
    if (!(std::abs(secondsSinceEpoch) < mostSeconds))
        return {};
    const QDateTime date = archive::epoch().addMSecs(std::llround(secondsSinceEpoch * 1000));
    return date.date().year() > 0 ? date : QDateTime();
}

qint64 integerOf(const QVariant& value) {
    if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Bool)
        return value.toLongLong();
    constexpr double limit = 9.0e18;
    const double real = realOf(value).value_or(0);
    return std::abs(real) < limit ? static_cast<qint64>(real) : 0;
}

} // namespace

KeyedUnarchiver::Object::Object(QVariantList objects, quint64 identity, QVariantMap record)
    : m_objects(std::move(objects)), m_identity(identity), m_record(std::move(record)) {}

QVariant KeyedUnarchiver::Object::value(const QVariantMap& record, const QString& key) const {
    return resolved(m_objects, record.value(key));
}

QString KeyedUnarchiver::Object::decodeString(const QString& key) const {
    QVariant text = value(m_record, key);
    if (text.typeId() == QMetaType::QVariantMap)
        text = value(text.toMap(), archive::text);
    if (text.typeId() == QMetaType::QByteArray)
        return QString::fromUtf8(text.toByteArray());
    return text.typeId() == QMetaType::QString ? text.toString() : QString();
}

QDateTime KeyedUnarchiver::Object::decodeDate(const QString& key) const {
    const QVariant date = value(m_record, key);
    if (date.typeId() == QMetaType::QDateTime)
        return date.toDateTime();
    if (date.typeId() != QMetaType::QVariantMap)
        return {};
    const auto seconds = realOf(value(date.toMap(), archive::dateTime));
    return seconds ? dateOf(*seconds) : QDateTime();
}

bool KeyedUnarchiver::Object::decodeBool(const QString& key) const {
    return integerOf(value(m_record, key)) != 0;
}

qint32 KeyedUnarchiver::Object::decodeInt(const QString& key) const {
    const qint64 integer = decodeInteger(key);
    using Limits = std::numeric_limits<qint32>;
    return integer >= Limits::min() && integer <= Limits::max() ? static_cast<qint32>(integer) : 0;
}

qint64 KeyedUnarchiver::Object::decodeInteger(const QString& key) const {
    return integerOf(value(m_record, key));
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

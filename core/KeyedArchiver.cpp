// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeyedArchiver.h"

#include "core/ArchivedObject.h"
#include "core/KeyedArchiveNames.h"

#include <utility>

namespace dorvane {

namespace {

constexpr PropertyListUid nil{0};

QVariant reference(PropertyListUid uid) {
    return QVariant::fromValue(uid);
}

} // namespace

QVariant KeyedArchiver::archivedList(const std::vector<Object>& objects) {
    KeyedArchiver coder;
    const PropertyListUid root = coder.addList(objects);
    return QVariantMap{{archive::version, archive::versionNumber},
                       {archive::archiver, archive::archiverName},
                       {archive::top, QVariantMap{{archive::root, reference(root)}}},
                       {archive::objects, coder.m_objects}};
}

KeyedArchiver::KeyedArchiver() : m_objects{QString(archive::null)} {}

void KeyedArchiver::encodeObject(const QString& text, const QString& key) {
    m_record.insert(key, reference(text.isNull() ? nil : addText(text)));
}

void KeyedArchiver::encodeObject(const QDateTime& date, const QString& key) {
    if (!date.isValid()) {
        m_record.insert(key, reference(nil));
        return;
    }
    const PropertyListUid uid =
        addRecord({QStringLiteral("NSDate"), QStringLiteral("NSObject")}, [&] {
            const auto milliseconds = static_cast<double>(archive::epoch().msecsTo(date));
            m_record.insert(archive::dateTime, milliseconds / 1000);
        });
    m_record.insert(key, reference(uid));
}

void KeyedArchiver::encodeBool(bool value, const QString& key) {
    m_record.insert(key, value);
}

void KeyedArchiver::encodeInt(qint32 value, const QString& key) {
    m_record.insert(key, qint64(value));
}

void KeyedArchiver::encodeInteger(qint64 value, const QString& key) {
    m_record.insert(key, value);
}

void KeyedArchiver::encodeOther(const QVariant& value, const QString& key) {
    m_record.insert(key, attached(value));
}

// As deep as the value nests, which whoever read it has bounded.
QVariant KeyedArchiver::attached(const QVariant& value) {
    if (value.typeId() == qMetaTypeId<ArchivedObject>())
        return reference(addDetached(value.value<ArchivedObject>().value));
    if (value.typeId() == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (QVariant& each : map)
            each = attached(each);
        return map;
    }
    if (value.typeId() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant& each : list)
            each = attached(each);
        return list;
    }
    return value;
}

PropertyListUid KeyedArchiver::addDetached(const QVariant& object) {
    if (object.typeId() == QMetaType::QString)
        return addText(object.toString());
    const QStringList classes = object.toMap().value(archive::classes).toStringList();
    return classes.isEmpty() ? add(attached(object)) : addClass(classes);
}

PropertyListUid KeyedArchiver::addList(const std::vector<Object>& objects) {
    const QStringList classes = {QStringLiteral("NSMutableArray"), QStringLiteral("NSArray"),
                                 QStringLiteral("NSObject")};
    return addRecord(classes, [&] {
        QVariantList references;
        for (const Object& object : objects)
            references.append(reference(addObject(object)));
        m_record.insert(archive::listObjects, references);
    });
}

PropertyListUid KeyedArchiver::addObject(const Object& object) {
    const auto known = m_byIdentity.constFind(object.identity);
    if (known != m_byIdentity.cend())
        return *known;
    const PropertyListUid uid = addRecord(object.classes, [&] { object.encode(*this); });
    m_byIdentity.insert(object.identity, uid);
    return uid;
}

PropertyListUid KeyedArchiver::addText(const QString& text) {
    // A text that reads like the mark of nil would be taken for it, so it gets a record.
    if (text == archive::null)
        return addRecord({QStringLiteral("NSString"), QStringLiteral("NSObject")},
                         [&] { m_record.insert(archive::text, text); });
    const auto known = m_texts.constFind(text);
    return known != m_texts.cend() ? *known : *m_texts.insert(text, add(text));
}

PropertyListUid KeyedArchiver::addClass(const QStringList& classes) {
    const auto known = m_classes.constFind(classes.first());
    if (known != m_classes.cend())
        return *known;
    const PropertyListUid uid =
        add(QVariantMap{{archive::className, classes.first()}, {archive::classes, classes}});
    m_classes.insert(classes.first(), uid);
    return uid;
}

PropertyListUid KeyedArchiver::add(const QVariant& object) {
    m_objects.append(object);
    return {static_cast<quint64>(m_objects.size() - 1)};
}

template<typename Encode>
PropertyListUid KeyedArchiver::addRecord(const QStringList& classes, Encode encode) {
    const PropertyListUid uid = add(QVariant());
    QVariantMap outer = std::exchange(m_record, {});
    encode();
    m_record.insert(archive::classOf, reference(addClass(classes)));
    m_objects[static_cast<qsizetype>(uid.value)] = std::exchange(m_record, std::move(outer));
    return uid;
}

} // namespace dorvane

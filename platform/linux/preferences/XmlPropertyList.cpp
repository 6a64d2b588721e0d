// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListFormats.h"

#include <QXmlStreamReader>

namespace dorvane {

namespace {

QVariant integerOf(const QString& text) {
    bool isRead = false;
    const qint64 value = text.toLongLong(&isRead, 0); // hexadecimal after 0x
    if (isRead)
        return value;
    const quint64 large = text.toULongLong(&isRead, 0);
    return isRead ? QVariant(large) : QVariant();
}

QVariant dateOf(const QString& text) {
    const QDateTime date = QDateTime::fromString(text, Qt::ISODate);
    if (!date.isValid())
        return {};
    return propertyListDate(double(propertyListEpoch().msecsTo(date)) / 1000);
}

// Invalid for a text that is no value of the element's type.
QVariant scalarOf(QStringView element, const QString& text) {
    const QString trimmed = text.trimmed();
    if (element == QLatin1String("string"))
        return text;
    if (element == QLatin1String("true") || element == QLatin1String("false"))
        return element == QLatin1String("true");
    if (element == QLatin1String("integer"))
        return integerOf(trimmed);
    if (element == QLatin1String("date"))
        return dateOf(trimmed);
    if (element == QLatin1String("data"))
        return QByteArray::fromBase64(text.toLatin1()); // which passes white space over
    if (element != QLatin1String("real"))
        return {};
    bool isRead = false;
    const double value = trimmed.toDouble(&isRead);
    return isRead ? QVariant(value) : QVariant();
}

// Each function begins at the start of an element and ends behind its end. A list that is not well
// formed gives values until then; the reader has the error.
class Reader {
public:
    explicit Reader(QByteArrayView data)
        : m_xml(QByteArray::fromRawData(data.data(), data.size())) {}

    [[nodiscard]] std::optional<QVariant> read();

private:
    [[nodiscard]] QVariant value(int depth);
    [[nodiscard]] QVariant array(int depth);
    [[nodiscard]] QVariant dictionary(int depth);

    QXmlStreamReader m_xml;
};

std::optional<QVariant> Reader::read() {
    // Without entities of its own a text is as large as it looks.
    while (m_xml.readNext() != QXmlStreamReader::StartElement)
        if (m_xml.atEnd() || !m_xml.entityDeclarations().isEmpty())
            return std::nullopt;
    if (m_xml.name() != QLatin1String("plist") || !m_xml.readNextStartElement())
        return std::nullopt;
    const QVariant root = value(1);
    if (!root.isValid() || m_xml.readNextStartElement()) // there is one root
        return std::nullopt;
    while (!m_xml.atEnd())
        m_xml.readNext();
    return m_xml.hasError() ? std::nullopt : std::optional(root);
}

QVariant Reader::value(int depth) {
    if (depth > PropertyListLimits::depth)
        return {};
    if (m_xml.name() == QLatin1String("array"))
        return array(depth);
    if (m_xml.name() == QLatin1String("dict"))
        return dictionary(depth);
    const QString element = m_xml.name().toString();
    return scalarOf(element, m_xml.readElementText());
}

QVariant Reader::array(int depth) {
    QVariantList list;
    while (m_xml.readNextStartElement()) {
        const QVariant item = value(depth + 1);
        if (!item.isValid())
            return {};
        list.append(item);
    }
    return list;
}

QVariant Reader::dictionary(int depth) {
    QVariantMap map;
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() != QLatin1String("key"))
            return {};
        const QString key = m_xml.readElementText();
        const QVariant item = m_xml.readNextStartElement() ? value(depth + 1) : QVariant();
        if (!item.isValid())
            return {};
        map.insert(key, item);
    }
    return propertyListDictionary(map);
}

} // namespace

std::optional<QVariant> readXmlPropertyList(QByteArrayView data) {
    return Reader(data).read();
}

} // namespace dorvane

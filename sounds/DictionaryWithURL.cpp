// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/DictionaryWithURL.h"

#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QFile>
#include <QUrl>

namespace dorvane {

namespace {

[[nodiscard]] QByteArray fileContents(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qCWarning(logSounds).noquote() << path << ":" << file.errorString();
    return file.isOpen() ? file.readAll() : QByteArray();
}

// What follows the first comma, as RFC 2397 has it.
[[nodiscard]] QByteArray dataContents(const QUrl& url) {
    const QByteArray text = url.path(QUrl::FullyEncoded).toLatin1();
    const auto comma = text.indexOf(',');
    const QByteArray data = QByteArray::fromPercentEncoding(text.mid(comma + 1));
    return text.left(comma).endsWith(";base64") ? QByteArray::fromBase64(data) : data;
}

[[nodiscard]] QByteArray contents(const QUrl& url) {
    if (url.isLocalFile())
        return fileContents(url.toLocalFile());
    if (url.scheme() == QStringLiteral("data"))
        return dataContents(url);
    qCWarning(logSounds).noquote() << "not read:" << url.toDisplayString();
    return {};
}

} // namespace

std::optional<QVariantMap> dictionaryWithContentsOfURLUnzipped(const QUrl& url,
                                                               const PropertyListFormat& format) {
    const std::optional<QVariant> root = format.parse(contents(url));
    if (!root || root->metaType() != QMetaType::fromType<QVariantMap>())
        return {};
    return root->toMap();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OwnAddress.h"

#include "platform/Bundle.h"

namespace dorvane {

QStringList ownSchemes(const Bundle& bundle) {
    const QVariantList types =
        bundle.infoDictionary().value(QStringLiteral("CFBundleURLTypes")).toList();
    return types.value(0).toMap().value(QStringLiteral("CFBundleURLSchemes")).toStringList();
}

std::optional<QString> verbOf(const QString& address, const QStringList& schemes) {
    const qsizetype colon = address.indexOf(u':');
    if (colon < 0 || !schemes.contains(address.left(colon), Qt::CaseInsensitive))
        return std::nullopt;
    return address.mid(colon + 1).split(u'/', Qt::SkipEmptyParts).value(0).toLower();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListCodec.h"

#include "platform/linux/preferences/PropertyListFormats.h"

namespace dorvane {

std::optional<QVariant> PropertyListCodec::parse(QByteArrayView data) const {
    if (data.size() > PropertyListLimits::bytes)
        return std::nullopt;
    return isBinaryPropertyList(data) ? readBinaryPropertyList(data) : readXmlPropertyList(data);
}

std::optional<QByteArray> PropertyListCodec::binary(const QVariant& root) const {
    return writeBinaryPropertyList(root);
}

} // namespace dorvane

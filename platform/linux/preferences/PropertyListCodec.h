// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

namespace dorvane {

// Property lists from and to bytes. Whatever the bytes say, reading them takes no more than a few
// times their own size in memory and no deep stack: a list that contains itself, that repeats whole
// branches, or that is not whole is none.
class PropertyListCodec final : public PropertyListFormat {
public:
    [[nodiscard]] std::optional<QVariant> parse(QByteArrayView data) const override;
    [[nodiscard]] std::optional<QByteArray> binary(const QVariant& root) const override;
};

} // namespace dorvane

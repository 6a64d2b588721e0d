// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

namespace dorvane {

// Property lists with libplist. What it cannot be trusted with is refused beforehand, see
// PropertyListGuard.h. Texts end at their first NUL character.
class LibplistFormat final : public PropertyListFormat {
public:
    [[nodiscard]] std::optional<QVariant> parse(QByteArrayView data) const override;
    [[nodiscard]] std::optional<QByteArray> binary(const QVariant& root) const override;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"

#include <QJsonDocument>

namespace dorvane::testing {

// Property lists spelt in JSON, for tests that only need some format.
class FakePropertyListFormat final : public PropertyListFormat {
public:
    [[nodiscard]] std::optional<QVariant> parse(QByteArrayView data) const override {
        const QJsonDocument document = QJsonDocument::fromJson(data.toByteArray());
        return document.isNull() ? std::nullopt : std::optional(document.toVariant());
    }

    [[nodiscard]] std::optional<QByteArray> binary(const QVariant& root) const override {
        return QJsonDocument::fromVariant(root).toJson(QJsonDocument::Compact);
    }
};

} // namespace dorvane::testing

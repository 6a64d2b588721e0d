// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserDefaults.h"

#include <QHash>

namespace dorvane::testing {

// Preferences that live in memory. What synchronize() has written survives into another instance
// that is made from written(), as a file would.
class MemoryDefaults final : public UserDefaults {
public:
    explicit MemoryDefaults(QVariantMap written = {})
        : m_values(written), m_written(std::move(written)) {}

    [[nodiscard]] QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override { m_values[key] = value; }
    void removeValue(const QString& key) override { m_values.remove(key); }
    void registerDefaults(const QVariantMap&) override {}
    void setJoin(const QString& key, Join join) override { m_joins[key] = std::move(join); }
    // A file that was out of reach.
    void comeIntoReach(const QVariantMap& file) {
        for (const auto& [key, theirs] : file.asKeyValueRange())
            m_values[key] =
                m_joins.contains(key) ? m_joins[key]({}, m_values.value(key), theirs) : theirs;
    }
    void synchronize(Written written = {}) override {
        (void)finish();
        if (written)
            written(std::nullopt);
    }
    [[nodiscard]] bool finish() override {
        m_written = m_values;
        ++m_writes;
        return true;
    }

    [[nodiscard]] const QVariantMap& written() const { return m_written; }
    [[nodiscard]] int writes() const { return m_writes; }

private:
    QVariantMap m_values;
    QVariantMap m_written;
    QHash<QString, Join> m_joins;
    int m_writes = 0;
};

} // namespace dorvane::testing

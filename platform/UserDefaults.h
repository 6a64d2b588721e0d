// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

namespace dorvane {

// One domain of the user's preferences: keys with property-list values (see PropertyList.h).
// Main thread only.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // The stored value, else the registered default, else an invalid QVariant.
    [[nodiscard]] virtual QVariant value(const QString& key) const = 0;

    // Changes the value in memory; synchronize() makes it last.
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void removeValue(const QString& key) = 0;

    // Values for keys that have none stored; never written.
    virtual void registerDefaults(const QVariantMap& defaults) = 0;

    // Writes what changed since the last call: the whole file is replaced at once and is on the
    // disk when this returns. False when it could not be written; the reason is logged and the
    // changes stay in memory for the next call.
    virtual bool synchronize() = 0;
};

} // namespace dorvane

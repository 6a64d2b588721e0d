// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

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

    // Three states of one value: as this process last knew the stored one (`base`, invalid when
    // there was none), as it is here, and as it turns out to be stored by now, which is another
    // than `base`. The answer is stored in their place. Any thread.
    using Join =
        std::function<QVariant(const QVariant& base, const QVariant& ours, const QVariant& theirs)>;

    // How a value is joined with one that was stored meanwhile, or that could not be read before.
    // Without a join, a change that was made here wins.
    virtual void setJoin(const QString& key, Join join) = 0;

    // What kept the changes from the disk, in words for the user; nothing when they are there.
    using Written = std::function<void(const std::optional<QString>& problem)>;

    // Has what changed written by another thread: the whole file is replaced at once. `written` is
    // called when all of it is on the disk, or cannot be for now: at once when there is nothing to
    // write, else later. What could not be written stays in memory and is tried again.
    virtual void synchronize(Written written = {}) = 0;

    // The same, and waits for the disk; for the end of the program. Whether all of it is there.
    [[nodiscard]] virtual bool finish() = 0;
};

} // namespace dorvane

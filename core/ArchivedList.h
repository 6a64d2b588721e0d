// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"

#include <QString>

#include <optional>
#include <vector>

namespace dorvane {

class UserDefaults;

// One list of alarms under one key of the preferences. Main thread only.
class ArchivedList {
public:
    ArchivedList(QString key, UserDefaults& defaults, const AlarmArchive& archive);

    // Nothing when the key is absent. A value of which something cannot be read is kept as it is,
    // once, under a key of its own before anything is written over it, and the log says so.
    [[nodiscard]] std::optional<std::vector<AlarmPtr>> load();

    // Writes the list, to the disk at once.
    void save(const std::vector<AlarmPtr>& alarms);

private:
    void keepUnreadable(const QVariant& value);

    QString m_key;
    UserDefaults& m_defaults;
    const AlarmArchive& m_archive;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"

#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace dorvane {

class UserDefaults;

// One list of alarms under one key of the preferences. What was read once is remembered together
// with its bytes, so that reading it again costs next to nothing until they are others. Main thread
// only.
class ArchivedList {
public:
    ArchivedList(QString key, UserDefaults& defaults, const AlarmArchive& archive);

    // Nothing when the key is absent, else alarms of the caller's own. A value of which something
    // cannot be read is kept as it is, once, under a key of its own before anything is written over
    // it, and the log says so.
    [[nodiscard]] std::optional<std::vector<AlarmPtr>> load();

    // Has the list written at once.
    void save(const std::vector<AlarmPtr>& alarms);

    // Writes the list with other paths in the place of these, where an alarm has one of them.
    // Whether any had.
    bool replaceSounds(const QHash<QString, QString>& moved);

private:
    // What some bytes hold. The alarms are never handed out.
    struct Reading {
        QByteArray data;
        AlarmArchive::Unarchived unarchived;
    };

    [[nodiscard]] AlarmArchive::Unarchived read(const QByteArray& data);
    void remember(const QByteArray& data, const std::vector<AlarmPtr>& alarms);
    void keepUnreadable(const QVariant& value);

    QString m_key;
    UserDefaults& m_defaults;
    const AlarmArchive& m_archive;
    std::optional<Reading> m_last;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QByteArray>

#include <vector>

namespace dorvane {

class PropertyListFormat;

// Lists of alarms as keyed archives, the form in which preferences hold them. Stateless; any
// thread, with alarms that no other touches meanwhile.
class AlarmArchive {
public:
    // The format must outlive the object.
    explicit AlarmArchive(const PropertyListFormat& format);

    [[nodiscard]] QByteArray archivedData(const std::vector<AlarmPtr>& alarms) const;

    struct Unarchived {
        std::vector<AlarmPtr> alarms;
        // False when something in the data is there and could not be read; the rest is in the list.
        bool isComplete = true;
    };
    // Unknown classes, missing keys and values of a wrong type are read as nothing, off and zero.
    // An alarm of which it cannot be read when it would ring has no due time. Values that nobody
    // here knows stay with their alarm, and are archived with it;
    // what is no archive of a list at all gives an empty, incomplete list. Never fails.
    [[nodiscard]] Unarchived unarchive(const QByteArray& data) const;

private:
    const PropertyListFormat& m_format;
};

} // namespace dorvane

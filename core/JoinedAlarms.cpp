// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/JoinedAlarms.h"

#include <algorithm>

namespace dorvane {

namespace {

using Alarms = std::vector<AlarmPtr>;

AlarmPtr foundIn(const Alarms& list, const Alarm& alarm, IsSameAlarm isSame) {
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const AlarmPtr& each) { return isSame(*each, alarm); });
    return found == list.end() ? nullptr : *found;
}

} // namespace

Alarms joinedAlarms(const Alarms& base, const Alarms& ours, const Alarms& theirs,
                    IsSameAlarm isSame) {
    Alarms all;
    const auto isTaken = [&](const AlarmPtr& alarm) {
        return std::find(all.begin(), all.end(), alarm) != all.end();
    };
    for (const AlarmPtr& stored : theirs) {
        const AlarmPtr before = foundIn(base, *stored, isSame);
        const AlarmPtr own = foundIn(ours, *stored, isSame);
        const bool wasRemovedHere = before && !own;
        const bool isOlderHere = before && own && own->isStoredLike(*before);
        if (!wasRemovedHere)
            all.push_back(!own || isOlderHere || isTaken(own) ? stored : own);
    }
    std::copy_if(ours.begin(), ours.end(), std::back_inserter(all),
                 [&](const AlarmPtr& own) { return !foundIn(theirs, *own, isSame); });
    return all;
}

bool haveSameTitle(const Alarm& one, const Alarm& other) {
    return one.title() == other.title();
}

bool haveSameValues(const Alarm& one, const Alarm& other) {
    return one.isStoredLike(other);
}

UserDefaults::Join joinOfAlarms(const AlarmArchive& archive, IsSameAlarm isSame) {
    return [&archive, isSame](const QVariant& base, const QVariant& ours, const QVariant& theirs) {
        if (!ours.isValid())
            return base.isValid() ? ours : theirs;
        const auto read = [&](const QVariant& list) {
            return archive.unarchive(list.toByteArray()).alarms;
        };
        const QByteArray data =
            archive.archivedData(joinedAlarms(read(base), read(ours), read(theirs), isSame));
        return data.isEmpty() ? ours : QVariant(data);
    };
}

} // namespace dorvane

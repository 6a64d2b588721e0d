// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StoredAlarms.h"

#include <algorithm>

namespace dorvane {

namespace {

auto firstTitled(std::vector<AlarmPtr>& alarms, const QString& title) {
    return std::find_if(alarms.begin(), alarms.end(),
                        [&](const AlarmPtr& alarm) { return alarm->title() == title; });
}

} // namespace

StoredAlarms::StoredAlarms(UserDefaults& defaults, const AlarmArchive& archive,
                           const RunLoop& runLoop)
    : m_list(QStringLiteral("StoredAlarmsKey"), defaults, archive, runLoop) {}

std::optional<std::vector<AlarmPtr>> StoredAlarms::alarms() {
    return m_list.load();
}

void StoredAlarms::put(const Alarm& alarm) {
    std::vector<AlarmPtr> stored = load();
    const auto found = firstTitled(stored, alarm.title());
    if (found != stored.end())
        *found = alarm.copy();
    else
        stored.push_back(alarm.copy());
    m_list.save(stored);
}

void StoredAlarms::updateAlarmList(const AlarmPtr& alarm) {
    std::vector<AlarmPtr> stored = load();
    const auto found = firstTitled(stored, alarm->title());
    if (found == stored.end())
        return;
    *found = alarm;
    m_list.save(stored);
}

void StoredAlarms::removeAlarm(const QString& title) {
    std::vector<AlarmPtr> stored = load();
    const auto found = firstTitled(stored, title);
    if (found == stored.end())
        return;
    stored.erase(found);
    m_list.save(stored);
}

std::vector<AlarmPtr> StoredAlarms::load() {
    return alarms().value_or(std::vector<AlarmPtr>());
}

QStringList alarmTitles(const std::vector<AlarmPtr>& alarms) {
    QStringList titles;
    for (const AlarmPtr& alarm : alarms)
        titles << alarm->title();
    return titles;
}

} // namespace dorvane

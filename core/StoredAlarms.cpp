// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StoredAlarms.h"

#include "core/JoinedAlarms.h"
#include "core/NotificationNames.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"

#include <algorithm>

namespace dorvane {

namespace {

const auto key = QStringLiteral("StoredAlarmsKey");

auto firstTitled(std::vector<AlarmPtr>& alarms, const QString& title) {
    return std::find_if(alarms.begin(), alarms.end(),
                        [&](const AlarmPtr& alarm) { return alarm->title() == title; });
}

// As much of it as the menu listed before is listed still.
void replace(AlarmPtr& entry, Alarm& alarm, const AlarmPtr& by) {
    if (entry->isExisInActiveAlarmList() && !alarm.isDefaultAlarm()) {
        alarm.setIsExisInActiveAlarmList(true);
        by->setIsExisInActiveAlarmList(true);
    }
    entry = by;
}

AlarmPtr templateOf(const Alarm& alarm, Instant now) {
    AlarmPtr copy = alarm.copy(now);
    if (alarm.snoozedMinutes() > 0)
        copy->setTimeWishedAt(copy->storedTime().addSecs(-60 * qint64(alarm.snoozedMinutes())),
                              alarm.wishedTime());
    return copy;
}

void putInto(std::vector<AlarmPtr>& stored, Alarm& alarm, Instant now,
             const QString& formerTitle = {}) {
    if (!formerTitle.isEmpty() && formerTitle != alarm.title()) {
        if (const auto former = firstTitled(stored, formerTitle); former != stored.end()) {
            if (const auto same = firstTitled(stored, alarm.title()); same != stored.end()) {
                alarm.setIsExisInActiveAlarmList(alarm.isExisInActiveAlarmList() ||
                                                 (*former)->isExisInActiveAlarmList());
                stored.erase(former);
            } else {
                (*former)->setTitle(alarm.title());
            }
        }
    }
    const AlarmPtr copy = templateOf(alarm, now);
    if (const auto found = firstTitled(stored, alarm.title()); found != stored.end())
        replace(*found, alarm, copy);
    else if (stored.size() < StoredAlarms::most)
        stored.push_back(copy);
    else
        qCWarning(logCore, "%zu alarms are stored, which is the most", stored.size());
}

} // namespace

StoredAlarms::StoredAlarms(UserDefaults& defaults, const AlarmArchive& archive,
                           NotificationCenter& notifications)
    : m_list(key, defaults, archive), m_notifications(notifications) {
    defaults.setJoin(key, joinOfAlarms(archive, haveSameTitle));
}

std::optional<std::vector<AlarmPtr>> StoredAlarms::alarms() {
    return m_list.load();
}

bool StoredAlarms::hasRoomFor(const QString& title, std::size_t others) {
    std::vector<AlarmPtr> stored = load();
    return stored.size() + others < most || firstTitled(stored, title) != stored.end();
}

void StoredAlarms::put(Alarm& alarm, Instant now, const QString& formerTitle) {
    std::vector<AlarmPtr> stored = load();
    putInto(stored, alarm, now, formerTitle);
    saveDefaultAlarms(stored);
}

void StoredAlarms::put(const std::vector<AlarmPtr>& alarms, Instant now) {
    std::vector<AlarmPtr> stored = load();
    for (const AlarmPtr& alarm : alarms)
        putInto(stored, *alarm, now);
    saveDefaultAlarms(stored);
}

void StoredAlarms::updateAlarmList(const AlarmPtr& alarm) {
    std::vector<AlarmPtr> stored = load();
    const auto found = firstTitled(stored, alarm->title());
    if (found == stored.end())
        return;
    replace(*found, *alarm, alarm);
    saveDefaultAlarms(stored);
}

void StoredAlarms::updateInactiveAlarmList(const AlarmPtr& alarm) {
    std::vector<AlarmPtr> stored = load();
    alarm->setIsExisInActiveAlarmList(true);
    if (const auto found = firstTitled(stored, alarm->title()); found != stored.end())
        *found = alarm;
    else
        stored.push_back(alarm);
    saveDefaultAlarms(stored);
}

bool StoredAlarms::isListed(const QString& title) {
    const auto stored = load();
    return std::any_of(stored.begin(), stored.end(), [&](const AlarmPtr& alarm) {
        return alarm->title() == title && alarm->isExisInActiveAlarmList();
    });
}

void StoredAlarms::removeAlarm(const QString& title) {
    std::vector<AlarmPtr> stored = load();
    const auto found = firstTitled(stored, title);
    if (found == stored.end())
        return;
    stored.erase(found);
    saveDefaultAlarms(stored);
}

void StoredAlarms::replaceSounds(const QHash<QString, QString>& moved) {
    if (m_list.replaceSounds(moved))
        m_notifications.post(storedAlarmsDidChangeNotification, this);
}

std::vector<AlarmPtr> StoredAlarms::load() {
    return alarms().value_or(std::vector<AlarmPtr>());
}

void StoredAlarms::saveDefaultAlarms(const std::vector<AlarmPtr>& alarms) {
    m_list.save(alarms);
    m_notifications.post(storedAlarmsDidChangeNotification, this);
}

QStringList alarmTitles(const std::vector<AlarmPtr>& alarms) {
    QStringList titles;
    for (const AlarmPtr& alarm : alarms)
        titles << alarm->title();
    return titles;
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StoredAlarms.h"

#include "core/JoinedAlarms.h"
#include "core/NotificationNames.h"
#include "core/SameAlarm.h"
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

// The entry that was stored of the alarm, and not one of another that has its title: what other
// programs make is not stored.
auto entryOf(std::vector<AlarmPtr>& alarms, const Alarm& alarm) {
    const auto titled = firstTitled(alarms, alarm.title());
    return titled != alarms.end() && isSameAlarm(**titled, alarm) ? titled : alarms.end();
}

// As much of it as the menu listed before is listed still, and what only others know stays.
void replace(AlarmPtr& entry, Alarm& alarm, const AlarmPtr& by) {
    if (alarm.otherValues().isEmpty()) {
        alarm.setOtherValues(entry->otherValues());
        by->setOtherValues(entry->otherValues());
    }
    if (entry->isExisInActiveAlarmList() && !alarm.isDefaultAlarm()) {
        alarm.setIsExisInActiveAlarmList(true);
        by->setIsExisInActiveAlarmList(true);
    }
    entry = by;
}

AlarmPtr templateOf(const Alarm& alarm, Instant now) {
    AlarmPtr copy = alarm.copy(now);
    if (alarm.snoozedMinutes() != 0)
        copy->setTimeWishedAt(copy->storedTime().addSecs(-60 * qint64(alarm.snoozedMinutes())),
                              alarm.wishedTime());
    return copy;
}

void putInto(std::vector<AlarmPtr>& stored, Alarm& alarm, Instant now) {
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

bool StoredAlarms::hasRoomFor(const Alarm& edited, const QString& title) {
    return edited.isActive() || hasRoomFor(title) || hasEntryOf(edited);
}

bool StoredAlarms::hasEntryOf(const Alarm& alarm) {
    std::vector<AlarmPtr> stored = load();
    return entryOf(stored, alarm) != stored.end();
}

void StoredAlarms::put(Alarm& alarm, Instant now) {
    put(std::vector{alarm.shared_from_this()}, now);
}

void StoredAlarms::putEdited(Alarm& alarm, const Alarm& former, Instant now) {
    std::vector<AlarmPtr> stored = load();
    const auto entry = entryOf(stored, former);
    const bool hasEntry = entry != stored.end();
    const bool isTitleFree = firstTitled(stored, alarm.title()) == stored.end();
    const bool isAnothers = !isTitleFree && former.title() == alarm.title();
    const bool isFull = isTitleFree && stored.size() >= most;
    if (!hasEntry && former.isActive() && (isAnothers || isFull))
        return; // it runs, which is enough
    if (hasEntry && isTitleFree)
        (*entry)->setTitle(alarm.title());
    putInto(stored, alarm, now);
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
    const auto found = entryOf(stored, *alarm);
    if (found == stored.end())
        return;
    replace(*found, *alarm, alarm);
    saveDefaultAlarms(stored);
}

bool StoredAlarms::updateInactiveAlarmList(Alarm& alarm, Instant now) {
    if (!hasRoomFor(alarm.title()))
        return false;
    alarm.setIsExisInActiveAlarmList(true);
    put(alarm, now);
    return true;
}

bool StoredAlarms::keep(Alarm& alarm, Instant now) {
    const bool isAnothers = alarmTitles(load()).contains(alarm.title()) && !hasEntryOf(alarm);
    return isAnothers ? !duplicate(alarm, now).isEmpty() : updateInactiveAlarmList(alarm, now);
}

QString StoredAlarms::duplicate(const Alarm& alarm, Instant now) {
    std::vector<AlarmPtr> stored = load();
    if (stored.size() >= most)
        return {};
    const QStringList taken = alarmTitles(stored);
    const QString former = alarm.isDefaultAlarm() ? QStringLiteral("Timer") : alarm.title();
    QString title;
    for (int number = 2; title.isEmpty() || taken.contains(title); ++number)
        title = former + u' ' + QString::number(number);
    const AlarmPtr copy = templateOf(alarm, now);
    copy->setTitle(title);
    copy->setIsDefaultAlarm(false);
    copy->setIsExisInActiveAlarmList(true);
    stored.push_back(copy);
    saveDefaultAlarms(stored);
    return title;
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

QString noRoomText() {
    return QStringLiteral("%1 alarms are stored, which is the most. Delete one of them first, or "
                          "use its title.")
        .arg(StoredAlarms::most);
}

QStringList alarmTitles(const std::vector<AlarmPtr>& alarms) {
    QStringList titles;
    for (const AlarmPtr& alarm : alarms)
        titles << alarm->title();
    return titles;
}

} // namespace dorvane

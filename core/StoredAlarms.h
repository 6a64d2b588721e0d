// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ArchivedList.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace dorvane {

class NotificationCenter;

// The library of stored, reusable alarms: a list in which the title is the key. Every change is
// made on what is stored at that moment and written at once, so that two windows that work on the
// library do not undo each other's changes. Main thread only.
class StoredAlarms {
public:
    // All of it must outlive the library, which announces each of its changes there.
    StoredAlarms(UserDefaults& defaults, const AlarmArchive& archive,
                 NotificationCenter& notifications);

    // What is stored, in the order of first saving; nothing when no library was ever stored.
    // Each call reads afresh and gives alarms of its own.
    [[nodiscard]] std::optional<std::vector<AlarmPtr>> alarms();

    // The most alarms that are kept: whoever looks at the library looks at all of it.
    static constexpr std::size_t most = 1000;
    // Whether an alarm of this title can be stored, with as many others still to come.
    [[nodiscard]] bool hasRoomFor(const QString& title, std::size_t others = 0);
    // Whether the alarm can be edited to have the title: a running one needs no room here.
    [[nodiscard]] bool hasRoomFor(const Alarm& edited, const QString& title);

    // Whether an entry was stored of the alarm, and not of another that has its title.
    [[nodiscard]] bool hasEntryOf(const Alarm& alarm);

    // Stores a copy of the alarm, snoozes aside: in the place of the first one with its title, else
    // at the end. What the menu lists stays listed, and the alarm is flagged as it is. One for
    // which there is no room is not stored, of which the log tells.
    void put(Alarm& alarm, Instant now);

    // The same for an alarm that was edited, with what it was before: its entry goes along where
    // the new title is free, and stays beside that of the new title where it is not. What runs
    // under the title of another's entry leaves that alone, unless it was given the title now.
    void putEdited(Alarm& alarm, const Alarm& former, Instant now);

    // The same for several alarms, which are written together.
    void put(const std::vector<AlarmPtr>& alarms, Instant now);

    // Stores the alarm as it is, having moved on, in the place of its entry; when that is not
    // stored, or the entry of its title is of another alarm, nothing happens.
    void updateAlarmList(const AlarmPtr& alarm);

    // Flags the alarm as one that the menu lists while it does not run, and stores a copy of it.
    // False, and nothing happens, when there is no room: see noRoomText().
    [[nodiscard]] bool updateInactiveAlarmList(Alarm& alarm, Instant now);

    // The same for an alarm that is to run no more; where the entry of its title is of another
    // alarm, that stays, and the copy gets a title of its own.
    [[nodiscard]] bool keep(Alarm& alarm, Instant now);

    // Stores a copy of the alarm, listed by the menu, under a title of its own: that of the alarm
    // with a number. Answers the title; empty when there is no room.
    [[nodiscard]] QString duplicate(const Alarm& alarm, Instant now);

    // Whether an alarm of the title is stored and listed by the menu while it does not run.
    [[nodiscard]] bool isListed(const QString& title);

    // Removes the first alarm of the title, if there is one.
    void removeAlarm(const QString& title);

    // Sounds have other paths now.
    void replaceSounds(const QHash<QString, QString>& moved);

private:
    std::vector<AlarmPtr> load();
    void saveDefaultAlarms(const std::vector<AlarmPtr>& alarms);

    ArchivedList m_list;
    NotificationCenter& m_notifications;
};

// What a user is told who would store more than there is room for.
[[nodiscard]] QString noRoomText();

// The titles of the alarms, in order.
[[nodiscard]] QStringList alarmTitles(const std::vector<AlarmPtr>& alarms);

} // namespace dorvane

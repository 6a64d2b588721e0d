// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserDefaults.h"
#include "sounds/ReminderController.h"

#include <memory>

namespace dorvane {

class ActiveAlarms;
class AlarmControl;
class AlarmPause;
class BreakCycle;
class ClockBreaks;
class MoveToApplications;
class SoundRepeat;
class Journal;
class LastDeletion;
class LastRun;
class RingPreferences;
class StoredAlarms;
class UpdateChecker;
class UsersNotificationManager;
class WakeUps;
class WillItRing;
struct Desktop;

// The process-wide instances that are not members of their own class; see SharedInstances.cpp,
// and SharedBreaks.cpp for those of the break reminder.
// For app/ only: everything else is given what it needs.
[[nodiscard]] Desktop& sharedDesktop();
[[nodiscard]] ActiveAlarms& sharedActiveAlarms();
[[nodiscard]] AlarmControl& sharedAlarmControl();
[[nodiscard]] AlarmPause& sharedPause();
[[nodiscard]] LastDeletion& sharedLastDeletion();
[[nodiscard]] ClockBreaks& sharedClockBreaks();
[[nodiscard]] StoredAlarms& sharedStoredAlarms();

// Calls back, later and once, when all that runs and is stored is on the disk, else with what keeps
// it from there.
void saveAll(const UserDefaults::Written& saved);

// Once, when the alarms of the last run are back.
void bringSoundsOver();
[[nodiscard]] Journal& sharedJournal();
[[nodiscard]] LastRun& sharedLastRun();
[[nodiscard]] RingPreferences& sharedRingPreferences();
[[nodiscard]] SoundRepeat& sharedSoundRepeat();
[[nodiscard]] UpdateChecker& sharedUpdateChecker();
[[nodiscard]] UsersNotificationManager& sharedUsersNotificationManager();
[[nodiscard]] WakeUps& sharedWakeUps();
[[nodiscard]] WillItRing& sharedChecks();

// Gives the windows their icon; with the first that has a frame, so that a start does not pay for
// it.
void showWindowIcon();

// What every window that records works with.
[[nodiscard]] ReminderController::Surroundings reminderSurroundings();

// The cycle that the application owns.
[[nodiscard]] std::unique_ptr<BreakCycle> makeBreakCycle();

// What offers to move the program at the start.
[[nodiscard]] std::unique_ptr<MoveToApplications> makeMover();

} // namespace dorvane

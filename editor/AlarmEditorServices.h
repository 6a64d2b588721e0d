// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmForm.h"

#include <functional>
#include <memory>

namespace dorvane {

class AudioStorageController;
class Bundle;
class NotificationCenter;
class PropertyListFormat;
class ReminderController;
class RunLoop;
class SoundPlayer;
class SpeechService;
class StoredAlarms;
class Workspace;

// What the alarm editor works with; all of it must outlive the editor.
struct AlarmEditorServices {
    RunLoop& runLoop;
    const Bundle& bundle;
    StoredAlarms& storedAlarms;
    SoundPlayer& soundPlayer;
    AudioStorageController& audioStorage;
    SpeechService& speech;
    Workspace& workspace;
    NotificationCenter& notificationCenter;
    const PropertyListFormat& propertyLists;
    // A window in which reminders are recorded, not yet shown.
    std::function<std::shared_ptr<ReminderController>()> makeReminders;
    // What a new alarm has; without a sound it is a silent one.
    std::function<RingDefaults()> ringDefaults;
    // Whether an alarm is among those that run.
    std::function<bool(const AlarmPtr& alarm)> runs;
};

} // namespace dorvane

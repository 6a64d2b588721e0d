// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane {

class AudioStorageController;
class Bundle;
class NotificationCenter;
class PropertyListFormat;
class RunLoop;
class SoundPlayer;
class SoundRepeat;
class SpeechService;
class StoredAlarms;
class Workspace;

// What the alarm editor works with; all of it must outlive the editor.
struct AlarmEditorServices {
    RunLoop& runLoop;
    const Bundle& bundle;
    StoredAlarms& storedAlarms;
    SoundPlayer& soundPlayer;
    SoundRepeat& soundRepeat;
    AudioStorageController& audioStorage;
    SpeechService& speech;
    Workspace& workspace;
    NotificationCenter& notificationCenter;
    const PropertyListFormat& propertyLists;
    // Opens the window in which reminders are recorded.
    std::function<void()> openReminders;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QWidget;

namespace dorvane {

class AudioStorageController;
class BreakCycle;
class Bundle;
class ClockBreaks;
class NotificationCenter;
class PendixTakeABreakSettings;
class Presence;
class PropertyListFormat;
class RespitoAudioPlayerController;
class RunLoop;
class SoundPlayer;
class UserDefaults;
class Workspace;

// What the break preferences window works with; all of it must outlive the window.
struct BreakWindowServices {
    RunLoop& runLoop;
    PendixTakeABreakSettings& settings;
    BreakCycle& cycle;
    ClockBreaks& clock;
    Presence& presence;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    const Bundle& bundle;
    const PropertyListFormat& propertyLists;
    SoundPlayer& player;
    AudioStorageController& library;
    Workspace& workspace;
    // The window that plays the built-in track, made when it is first asked for.
    std::function<RespitoAudioPlayerController&()> audioPlayer;
    // Opens the window that records sounds for breaks, above the one that asks for it.
    std::function<void(const QWidget& owner)> showRecordingWindow;
    std::function<void()> beep;
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "firing/CurrentSound.h"
#include "firing/PreparedSounds.h"
#include "firing/RingingAlarms.h"
#include "firing/SnoozeWindowStack.h"
#include "firing/TextSpeakerDelegate.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace dorvane {

class FlashingIcon;
class SnoozeWindowControllerDelegate;
class SoundRepeat;
class TextSpeaker;
class WindowPlace;

// Makes an alarm ring: its window, its spoken title, its sound, the flashing icon. Main thread
// only.
class AlarmRinger final : private TextSpeakerDelegate {
public:
    // What ringing reaches; all of it must outlive the ringer.
    struct Surroundings {
        RunLoop& runLoop;
        SoundPlayer& player;
        SoundRepeat& repeat;
        TextSpeaker& textSpeaker;
        FlashingIcon& icon;
        const WindowPlace& place;
        SnoozeWindowControllerDelegate& windowDelegate;
        // Whether the path is one of the short alert sounds, which are played several times.
        std::function<bool(const QString& path)> isSystemSound;
        SoundOutput& output;
        SleepInhibitor& inhibitor;
        // The alert sound that is heard in place of a file that cannot be.
        std::function<QString()> standInPath;
    };

    // Becomes the delegate of the text speaker.
    explicit AlarmRinger(Surroundings surroundings);
    ~AlarmRinger() override;

    // Makes ready what is heard when the alarm falls due, within the next half minute: its sound,
    // its spoken title. An alarm that is changed meanwhile rings as changed.
    void prepareAlarm(const AlarmPtr& alarm);

    // Marks the alarm triggered and rings it within the next turns of the loop: of many alarms that
    // are due in the same second each gets a turn, so that the program stays responsive. An alarm
    // that speaks its title sounds only after that, and only if it still rings then; where its
    // voice is not installed, it stays silent.
    void activateAlarm(const AlarmPtr& alarm);

    // Starts the alarm's sound, if it plays one, in place of the one that plays now. An alert sound
    // is played three times, whatever the user does; any other file once, or for 20 s with its end
    // faded. In place of a file that is gone, cannot be decoded or keeps its disk waiting, an alert
    // sound is heard, and the window says so.
    void soundAlarm(const AlarmPtr& alarm);

    // The alarm rings no more: stops the sound that plays now.
    void deactivateAlarm(const AlarmPtr& alarm);

private:
    void ringNext();
    void ring(const AlarmPtr& alarm);
    void watchLoading(const AlarmPtr& alarm, Sound& sound);
    void speakTitle(const AlarmPtr& alarm);
    void soundAgain(const AlarmPtr& alarm);
    void giveWay();
    void ringStandIn(const AlarmPtr& alarm, const QString& note);
    void textSpeakerFinishedSpeakingText(TextSpeaker& speaker) override;
    void textSpeakerLacksVoice(TextSpeaker& speaker) override;

    Surroundings m_surroundings;
    SnoozeWindowStack m_windows;
    std::deque<AlarmPtr> m_waiting;
    PreparedSounds m_prepared;
    CurrentSound m_playingSound;
    RingingAlarms m_ringing;

    // An alarm of which it is not known yet whether its sound can be played.
    struct Loading {
        RunLoopTimer patience;
        std::unique_ptr<FadingSound> replaced; // a sound that another took the place of meanwhile
    };
    std::map<AlarmPtr, Loading> m_loading;
    AlarmPtr m_sounding; // whose sound m_playingSound is, or was
    std::map<AlarmPtr, RingingAlarms::Ended> m_speaking;
    Lifeline<AlarmRinger> m_lifeline{*this};
};

} // namespace dorvane

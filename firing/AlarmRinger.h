// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "firing/CurrentSound.h"
#include "firing/PreparedSounds.h"
#include "firing/RingingAlarms.h"
#include "firing/RingMix.h"
#include "firing/SnoozeWindowStack.h"
#include "firing/TextSpeakerDelegate.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <deque>
#include <functional>
#include <list>
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
        WindowPlace& place;
        SnoozeWindowControllerDelegate& windowDelegate;
        // Whether the path is one of the short alert sounds, which are played several times.
        std::function<bool(const QString& path)> isSystemSound;
        SoundOutput& output;
        SleepInhibitor& inhibitor;
        // The alert sound that is heard in place of a file that cannot be.
        std::function<QString()> standInPath;
        // See SnoozeWindowStack.
        MakeNotice makeNotice = {};
        // How loud alarms ring, 0.0 to 1.0; empty for 1.0.
        std::function<float()> volume = {};
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
    // title cannot be spoken, it sounds at once, with an alert sound if it has none of its own.
    void activateAlarm(const AlarmPtr& alarm);

    // Starts the alarm's sound, if it plays one. An alert sound is played three times, whatever the
    // user does; any other file once, or for 20 s with its end faded. In place of a file that is
    // gone, cannot be decoded or keeps its disk waiting, an alert sound is heard, and the window
    // says so. Sounds of alarms that ring together are mixed, see RingMix; a file that came to its
    // end behind another sound is heard once more in the silence after that. The sound of an alarm
    // that rings until it is answered follows on itself until then; it, and one that starts softly,
    // ends with the answer in any case.
    void soundAlarm(const AlarmPtr& alarm);

    // The alarm rings no more: ends its speech and its sound, and with the last alarm that rings
    // the flashing.
    void deactivateAlarm(const AlarmPtr& alarm);

private:
    // A title that is being spoken.
    struct Speaking {
        RingingAlarms::Ended ended;
        std::unique_ptr<RingMix::Voice> voice; // once it is heard
        RunLoopTimer patience;
    };
    // A file that is being played.
    struct Playing {
        Playing(AlarmPtr whose, RunLoop& runLoop) : alarm(std::move(whose)), sound(runLoop) {}
        AlarmPtr alarm;
        CurrentSound sound;
    };

    void ringNext();
    void ring(const AlarmPtr& alarm);
    void speakTitle(const AlarmPtr& alarm);
    void cannotSpeak(const AlarmPtr& alarm, SnoozeWindowController::Note why);
    // What an alarm that rings so has had of its sound.
    struct Rounds {
        RunLoop::Milliseconds begun{0}; // uptime
        RunLoop::Milliseconds last{0};  // uptime of the last one's beginning
        int count = 0;
        RunLoopTimer next;
    };

    void playFile(const AlarmPtr& alarm, std::unique_ptr<Sound> sound, RingingAlarms::Ended ended);
    [[nodiscard]] std::list<Playing>::iterator playing(const AlarmPtr& alarm);
    void soundAgain(const AlarmPtr& alarm, RingingAlarms::Again which);
    void goOn();
    void beginRound(const AlarmPtr& alarm, FadingSound& file);
    void nextRound(const AlarmPtr& alarm);
    void watchLoading(const AlarmPtr& alarm, Sound& sound);
    void ringStandIn(const AlarmPtr& alarm, const SnoozeWindowController::Note& note);
    void ringStandInForFile(const AlarmPtr& alarm, const QString& note);
    void textSpeakerBeganSpeakingText(TextSpeaker& speaker) override;
    void textSpeakerFinishedSpeakingText(TextSpeaker& speaker) override;
    void textSpeakerCouldNotSpeak(TextSpeaker& speaker) override;
    void textSpeakerLacksVoice(TextSpeaker& speaker) override;

    Surroundings m_surroundings;
    SnoozeWindowStack m_windows;
    std::deque<AlarmPtr> m_waiting;
    PreparedSounds m_prepared;
    RingingAlarms m_ringing;
    RingMix m_mix{m_surroundings.runLoop};
    std::map<AlarmPtr, RunLoopTimer> m_loading; // of which it is not known yet whether they play
    std::map<AlarmPtr, Speaking> m_speaking;
    std::list<Playing> m_playing; // the oldest first
    std::map<AlarmPtr, Rounds> m_rounds;
    std::vector<AlarmPtr> m_covered; // to be heard once more, the newest last
    Lifeline<AlarmRinger> m_lifeline{*this};
};

} // namespace dorvane

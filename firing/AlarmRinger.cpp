// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/AlarmRinger.h"

#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"

namespace dorvane {

using namespace std::chrono_literals;

AlarmRinger::AlarmRinger(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_windows(m_surroundings.place)
    , m_prepared(m_surroundings.runLoop, m_surroundings.player)
    , m_playingSound(m_surroundings.runLoop) {
    m_surroundings.textSpeaker.setDelegate(this);
}

AlarmRinger::~AlarmRinger() {
    m_surroundings.textSpeaker.setDelegate(nullptr);
}

void AlarmRinger::prepareAlarm(const AlarmPtr& alarm) {
    if (alarm->isSpeakAlarmName() && !alarm->voiceName().isEmpty())
        m_surroundings.textSpeaker.prepareText(alarm->title(), alarm->voiceName());
    if (alarm->isPlaySound())
        m_prepared.prepare(alarm->soundPath());
}

void AlarmRinger::activateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(true);
    m_waiting.push_back(alarm);
    if (m_waiting.size() == 1)
        ringNext();
}

void AlarmRinger::ringNext() {
    m_surroundings.runLoop.defer(m_lifeline.guard([](AlarmRinger& self) {
        const AlarmPtr alarm = std::move(self.m_waiting.front());
        self.m_waiting.pop_front();
        if (!self.m_waiting.empty())
            self.ringNext();
        if (alarm->isTriggered()) // unless it was cleared or deleted meanwhile
            self.ring(alarm);
    }));
}

void AlarmRinger::ring(const AlarmPtr& alarm) {
    alarm->setContext(SnoozeWindowController::showCloseTo(m_windows, m_surroundings.runLoop,
                                                          m_surroundings.windowDelegate, alarm));
    if (alarm->isSpeakAlarmName() && !alarm->voiceName().isEmpty()) {
        m_surroundings.textSpeaker.setContext(alarm);
        m_surroundings.textSpeaker.speakText(alarm->title(), alarm->voiceName());
    } else {
        soundAlarm(alarm);
    }
    m_surroundings.icon.startFlashing();
}

// An alarm that was snoozed or cleared while its title was being spoken does not sound.
void AlarmRinger::textSpeakerFinishedSpeakingText(TextSpeaker& speaker) {
    if (const AlarmPtr alarm = speaker.context(); alarm->isTriggered())
        soundAlarm(alarm);
}

void AlarmRinger::soundAlarm(const AlarmPtr& alarm) {
    if (!alarm->isPlaySound())
        return;
    m_playingSound.stop();
    const QString& path = alarm->soundPath();
    if (m_surroundings.isSystemSound(path)) {
        m_surroundings.repeat.play(m_prepared.take(path), 3);
        return;
    }
    FadingSound& playing = m_playingSound.replace(m_prepared.take(path));
    if (alarm->shouldFadeIn())
        playing.playFor(20s, 10s);
    else
        playing.sound().play();
}

void AlarmRinger::deactivateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(false);
    m_playingSound.stop();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/AlarmRinger.h"

#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"

namespace dorvane {

using namespace std::chrono_literals;

AlarmRinger::AlarmRinger(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_self(std::make_shared<AlarmRinger*>(this)) {
    m_surroundings.textSpeaker.setDelegate(this);
}

AlarmRinger::~AlarmRinger() {
    m_surroundings.textSpeaker.setDelegate(nullptr);
}

void AlarmRinger::activateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(true);
    m_waiting.push_back(alarm);
    if (m_waiting.size() == 1)
        ringNext();
}

void AlarmRinger::ringNext() {
    m_surroundings.runLoop.defer([weak = std::weak_ptr(m_self)] {
        const auto self = weak.lock();
        if (!self)
            return;
        AlarmRinger& ringer = **self;
        const AlarmPtr alarm = std::move(ringer.m_waiting.front());
        ringer.m_waiting.pop_front();
        if (!ringer.m_waiting.empty())
            ringer.ringNext();
        if (alarm->isTriggered()) // unless it was cleared or deleted meanwhile
            ringer.ring(alarm);
    });
}

void AlarmRinger::ring(const AlarmPtr& alarm) {
    alarm->setContext(SnoozeWindowController::showCloseTo(
        m_surroundings.place, m_surroundings.runLoop, m_surroundings.windowDelegate, alarm));
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
    if (m_playingSound)
        m_playingSound->stop();
    const QString& path = alarm->soundPath();
    if (m_surroundings.isSystemSound(path)) {
        m_surroundings.repeat.playSoundAtPath(path, 3);
        return;
    }
    m_playingSound = std::make_unique<FadingSound>(
        m_surroundings.runLoop, m_surroundings.player.soundWithContentsOfFile(path));
    Sound& sound = m_playingSound->sound();
    sound.setFinished([this, playing = m_playingSound.get()](bool) { releaseFinished(playing); });
    if (alarm->shouldFadeIn())
        m_playingSound->playFor(20s, 10s);
    else
        sound.play();
}

void AlarmRinger::deactivateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(false);
    if (m_playingSound)
        m_playingSound->stop();
}

// Not from inside the sound's own callback.
void AlarmRinger::releaseFinished(const FadingSound* finished) {
    m_surroundings.runLoop.defer([weak = std::weak_ptr(m_self), finished] {
        if (const auto self = weak.lock(); self && (*self)->m_playingSound.get() == finished)
            (*self)->m_playingSound.reset();
    });
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/AlarmRinger.h"

#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"

#include <QFileInfo>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// A disk that does not answer by then may never do.
constexpr auto longestLoading = 5s;

bool speaks(const Alarm& alarm) {
    return alarm.isSpeakAlarmName() && !alarm.voiceName().isEmpty();
}

} // namespace

AlarmRinger::AlarmRinger(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_windows(m_surroundings.place)
    , m_prepared(m_surroundings.runLoop, m_surroundings.player)
    , m_playingSound(m_surroundings.runLoop)
    , m_ringing(m_surroundings.runLoop, m_surroundings.output, m_surroundings.inhibitor,
                [this](const AlarmPtr& alarm) { soundAgain(alarm); }) {
    m_surroundings.textSpeaker.setDelegate(this);
}

AlarmRinger::~AlarmRinger() {
    m_surroundings.textSpeaker.setDelegate(nullptr);
}

void AlarmRinger::prepareAlarm(const AlarmPtr& alarm) {
    if (speaks(*alarm))
        m_surroundings.textSpeaker.prepareText(alarm->title(), alarm->voiceName());
    if (!alarm->isPlaySound())
        return;
    // First, so that it does not wait behind a file whose disk is dead.
    m_surroundings.player.keepInMemory(m_surroundings.standInPath());
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
    const auto window = SnoozeWindowController::showCloseTo(m_windows, m_surroundings.runLoop,
                                                            m_surroundings.windowDelegate, alarm);
    alarm->setContext(window);
    m_ringing.add(alarm, window);
    if (speaks(*alarm))
        speakTitle(alarm);
    else
        soundAlarm(alarm);
    m_surroundings.icon.startFlashing();
}

void AlarmRinger::speakTitle(const AlarmPtr& alarm) {
    m_speaking[alarm] = m_ringing.soundBegins(alarm);
    m_surroundings.textSpeaker.setContext(alarm);
    m_surroundings.textSpeaker.speakText(alarm->title(), alarm->voiceName());
}

// Of an alarm that was not heard the title is spoken again only where it is all that there is.
void AlarmRinger::soundAgain(const AlarmPtr& alarm) {
    if (alarm->isPlaySound())
        soundAlarm(alarm);
    else
        speakTitle(alarm);
}

// An alarm that was snoozed or cleared while its title was being spoken does not sound.
void AlarmRinger::textSpeakerFinishedSpeakingText(TextSpeaker& speaker) {
    const AlarmPtr alarm = speaker.context();
    if (const auto spoken = m_speaking.extract(alarm); spoken && !alarm->isPlaySound())
        spoken.mapped()(true);
    if (alarm->isTriggered())
        soundAlarm(alarm);
}

void AlarmRinger::textSpeakerLacksVoice(TextSpeaker& speaker) {
    const AlarmPtr alarm = speaker.context();
    m_speaking.erase(alarm);
    m_ringing.setFault(alarm,
                       {QStringLiteral("Not heard: the voice %1 is missing."), alarm->voiceName()});
}

void AlarmRinger::soundAlarm(const AlarmPtr& alarm) {
    if (!alarm->isPlaySound())
        return;
    giveWay();
    // What was to be heard and may be missing is found out all the same.
    if (const auto loading = m_loading.find(m_sounding); loading != m_loading.end())
        loading->second.replaced = m_playingSound.release();
    m_playingSound.stop();
    const QString& path = alarm->soundPath();
    auto ended = m_ringing.soundBegins(alarm);
    auto sound = m_prepared.take(path);
    watchLoading(alarm, *sound);
    if (m_surroundings.isSystemSound(path)) {
        m_surroundings.repeat.play(std::move(sound), 3, std::move(ended));
        return;
    }
    FadingSound& playing = m_playingSound.replace(std::move(sound), ended);
    m_sounding = alarm;
    if (!(alarm->shouldFadeIn() ? playing.playFor(20s, 10s) : playing.sound().play()))
        ended(false);
}

// The alarm whose sound is about to be stopped is silent with reason.
void AlarmRinger::giveWay() {
    if (m_playingSound.isPlaying())
        m_ringing.soundGivesWay(m_sounding);
}

// The sound may outlive the ringer, and ends with its callback; its file may never answer.
void AlarmRinger::watchLoading(const AlarmPtr& alarm, Sound& sound) {
    m_loading[alarm].patience = m_surroundings.runLoop.scheduleOnce(
        longestLoading,
        [this, alarm] {
            ringStandIn(AlarmPtr(alarm), QStringLiteral("%1 cannot be read: Ping rings."));
        },
        RunLoopMode::Common);
    sound.whenLoaded([ringer = m_lifeline.weak(), alarm, &sound] {
        AlarmRinger* const self = ringer.get();
        const SoundFault fault = sound.fault(); // what is erased may be the sound
        if (!self || self->m_loading.erase(alarm) == 0)
            return;
        if (fault == SoundFault::Gone)
            self->ringStandIn(alarm, QStringLiteral("%1 is missing: Ping rings."));
        else if (fault == SoundFault::Unplayable)
            self->ringStandIn(alarm, QStringLiteral("%1 cannot be played: Ping rings."));
    });
}

void AlarmRinger::ringStandIn(const AlarmPtr& alarm, const QString& note) {
    m_loading.erase(alarm);
    const QString file = QFileInfo(alarm->soundPath()).fileName();
    const QString name = file.isEmpty() ? QStringLiteral("The sound") : file;
    m_ringing.setFault(alarm, {note, name});
    if (m_sounding == alarm)
        m_sounding.reset();
    m_surroundings.repeat.playSoundAtPath(m_surroundings.standInPath(), 3,
                                          m_ringing.soundBegins(alarm));
}

void AlarmRinger::deactivateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(false);
    m_loading.erase(alarm);
    m_speaking.erase(alarm);
    giveWay();
    m_ringing.remove(alarm);
    m_playingSound.stop();
    if (m_sounding == alarm)
        m_sounding.reset();
}

} // namespace dorvane

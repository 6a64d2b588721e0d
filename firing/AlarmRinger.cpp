// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/AlarmRinger.h"

#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// A disk that does not answer by then may never do.
constexpr auto longestLoading = 5s;

// More files at once would be heard as nothing but noise.
constexpr std::size_t mostAtOnce = 16;

constexpr int alertPlays = 3;

// However short the sound is, its rounds are no faster.
constexpr auto shortestRound = 1s;

SnoozeWindowController::Note titleFault() {
    return {QStringLiteral("The title cannot be spoken"), {}};
}

// Its sound is more than one play that nobody ends.
bool ringsInRounds(const Alarm& alarm) {
    return alarm.ringsUntilAnswered() || alarm.startsSoftly();
}

bool speaks(const Alarm& alarm) {
    return alarm.isSpeakAlarmName() && !alarm.voiceName().isEmpty();
}

} // namespace

AlarmRinger::AlarmRinger(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_windows(m_surroundings.runLoop, m_surroundings.place, m_surroundings.makeNotice)
    , m_prepared(m_surroundings.runLoop, m_surroundings.player)
    , m_ringing(m_surroundings.runLoop, m_surroundings.output, m_surroundings.inhibitor,
                [this](const AlarmPtr& alarm, auto which) { soundAgain(alarm, which); }) {
    m_surroundings.textSpeaker.setDelegate(this);
    // In a turn of its own: whatever sounds next may begin in this one.
    m_mix.setFallenSilent([this] {
        m_surroundings.runLoop.defer(m_lifeline.guard([](AlarmRinger& self) { self.goOn(); }));
    });
}

AlarmRinger::~AlarmRinger() {
    m_mix.setFallenSilent({});
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
    if (m_surroundings.volume)
        m_mix.setVolume(m_surroundings.volume());
    if (speaks(*alarm))
        speakTitle(alarm);
    else
        soundAlarm(alarm);
    m_surroundings.icon.startFlashing();
}

void AlarmRinger::speakTitle(const AlarmPtr& alarm) {
    TextSpeaker& speaker = m_surroundings.textSpeaker;
    speaker.stopSpeaking(alarm);
    m_speaking[alarm] = {m_ringing.soundBegins(alarm), nullptr,
                         m_surroundings.runLoop.scheduleOnce(
                             longestLoading,
                             [this, alarm] {
                                 const AlarmPtr silent = alarm; // which goes with the timer
                                 m_surroundings.textSpeaker.stopSpeaking(silent);
                                 cannotSpeak(silent, titleFault());
                             },
                             RunLoopMode::Common)};
    speaker.setContext(alarm);
    speaker.speakText(alarm->title(), alarm->voiceName());
}

// In the mix from now on: what is not heard yet is in nobody's way.
void AlarmRinger::textSpeakerBeganSpeakingText(TextSpeaker& speaker) {
    const AlarmPtr alarm = speaker.context();
    const auto speaking = m_speaking.find(alarm);
    if (speaking == m_speaking.end())
        return;
    speaking->second.patience.cancel();
    speaking->second.voice = std::make_unique<RingMix::Voice>(
        m_mix, [&speaker, alarm](float gain) { speaker.setVolume(alarm, gain); },
        RingMix::Voice::Stage::Spoken);
}

// Of an alarm that was not heard the title is spoken again only where it is all that there is.
void AlarmRinger::soundAgain(const AlarmPtr& alarm, RingingAlarms::Again which) {
    const bool isOwn = which == RingingAlarms::Again::Own;
    if (alarm->isPlaySound() && (isOwn || alarm->soundPath() == m_surroundings.standInPath()))
        soundAlarm(alarm);
    else if (alarm->isPlaySound())
        ringStandInForFile(alarm, QStringLiteral("%1 broke off: Ping rings."));
    else if (!isOwn)
        cannotSpeak(alarm, titleFault());
    else
        speakTitle(alarm);
}

// An alarm that was snoozed or cleared while its title was being spoken does not sound.
void AlarmRinger::textSpeakerFinishedSpeakingText(TextSpeaker& speaker) {
    const AlarmPtr alarm = speaker.context();
    if (auto spoken = m_speaking.extract(alarm); spoken && !alarm->isPlaySound())
        spoken.mapped().ended(true);
    if (alarm->isTriggered())
        soundAlarm(alarm);
}

void AlarmRinger::textSpeakerCouldNotSpeak(TextSpeaker& speaker) {
    cannotSpeak(speaker.context(), titleFault());
}

void AlarmRinger::textSpeakerLacksVoice(TextSpeaker& speaker) {
    const AlarmPtr alarm = speaker.context();
    cannotSpeak(alarm, {QStringLiteral("The voice %1 is missing"), alarm->voiceName()});
}

// Whatever keeps a title from being spoken silences no alarm.
void AlarmRinger::cannotSpeak(const AlarmPtr& alarm, SnoozeWindowController::Note why) {
    m_speaking.erase(alarm);
    if (!alarm->isTriggered())
        return;
    why.text += alarm->isPlaySound() ? QStringLiteral(".") : QStringLiteral(": Ping rings.");
    if (!alarm->isPlaySound())
        return ringStandIn(alarm, why);
    m_ringing.setFault(alarm, why);
    soundAlarm(alarm);
}

void AlarmRinger::soundAlarm(const AlarmPtr& alarm) {
    if (!alarm->isPlaySound())
        return;
    const QString& path = alarm->soundPath();
    auto ended = m_ringing.soundBegins(alarm);
    std::erase(m_covered, alarm);
    if (m_surroundings.isSystemSound(path) && !ringsInRounds(*alarm)) {
        auto sound = m_mix.voiceOf(m_prepared.take(path));
        watchLoading(alarm, *sound);
        m_surroundings.repeat.play(std::move(sound), alertPlays, std::move(ended));
        return;
    }
    auto sound = m_mix.voiceOf(m_prepared.take(path), [this, alarm] {
        if (alarm->isTriggered())
            m_covered.push_back(alarm);
    });
    watchLoading(alarm, *sound);
    playFile(alarm, std::move(sound), std::move(ended));
}

void AlarmRinger::playFile(const AlarmPtr& alarm, std::unique_ptr<Sound> sound,
                           RingingAlarms::Ended ended) {
    if (m_playing.size() >= mostAtOnce) {
        m_ringing.soundGivesWay(m_playing.front().alarm);
        m_playing.front().sound.stop(); // behind others, so that it is heard again
    }
    auto found = playing(alarm);
    if (found == m_playing.end())
        found = m_playing.emplace(m_playing.end(), alarm, m_surroundings.runLoop);
    FadingSound& file = found->sound.replace(std::move(sound), [this, alarm, ended](bool isHeard) {
        ended(isHeard);
        const AlarmPtr heard = alarm; // which goes with what played
        m_playing.erase(playing(heard));
        if (isHeard)
            nextRound(heard);
    });
    if (ringsInRounds(*alarm))
        beginRound(alarm, file);
    if (alarm->shouldFadeIn() ? file.playFor(20s, 10s) : file.sound().play())
        return;
    ended(false);
    m_playing.erase(found);
}

void AlarmRinger::beginRound(const AlarmPtr& alarm, FadingSound& file) {
    const auto now = m_surroundings.runLoop.uptime();
    const auto [kept, isFirst] = m_rounds.try_emplace(alarm);
    Rounds& rounds = kept->second;
    if (isFirst)
        rounds.begun = now;
    rounds.last = now;
    rounds.next.cancel();
    ++rounds.count;
    if (alarm->startsSoftly())
        file.rise(now - rounds.begun);
}

// Not in the turn in which the last one ended, and no faster than a person hears as a sound.
void AlarmRinger::nextRound(const AlarmPtr& alarm) {
    const auto found = m_rounds.find(alarm);
    if (found == m_rounds.end())
        return;
    Rounds& rounds = found->second;
    const bool isAlert = m_surroundings.isSystemSound(alarm->soundPath());
    if (!alarm->ringsUntilAnswered() && !(isAlert && rounds.count < alertPlays))
        return;
    rounds.next = m_surroundings.runLoop.scheduleOnce(
        std::max<RunLoop::Milliseconds>(0ms, rounds.last + shortestRound -
                                                 m_surroundings.runLoop.uptime()),
        [this, alarm] { soundAlarm(AlarmPtr(alarm)); }, RunLoopMode::Common);
}

std::list<AlarmRinger::Playing>::iterator AlarmRinger::playing(const AlarmPtr& alarm) {
    return std::find_if(m_playing.begin(), m_playing.end(),
                        [&](const Playing& each) { return each.alarm == alarm; });
}

// Nothing sounds any more: whoever was drowned by others and still rings is heard now.
void AlarmRinger::goOn() {
    std::erase_if(m_covered, [this](const AlarmPtr& alarm) {
        const auto rounds = m_rounds.find(alarm);
        return !alarm->isTriggered() || (rounds != m_rounds.end() && rounds->second.next);
    });
    if (!m_mix.isSilent() || !m_loading.empty() || m_covered.empty())
        return;
    const AlarmPtr alarm = std::move(m_covered.back());
    m_covered.pop_back();
    soundAlarm(alarm);
}

// The sound may outlive the ringer, and ends with its callback; its file may never answer.
void AlarmRinger::watchLoading(const AlarmPtr& alarm, Sound& sound) {
    m_loading[alarm] = m_surroundings.runLoop.scheduleOnce(
        longestLoading,
        [this, alarm] {
            ringStandInForFile(AlarmPtr(alarm), QStringLiteral("%1 cannot be read: Ping rings."));
        },
        RunLoopMode::Common);
    sound.whenLoaded([ringer = m_lifeline.weak(), alarm, &sound] {
        AlarmRinger* const self = ringer.get();
        const SoundFault fault = sound.fault(); // what is erased may be the sound
        if (!self || self->m_loading.erase(alarm) == 0)
            return;
        if (fault == SoundFault::Gone)
            self->ringStandInForFile(alarm, QStringLiteral("%1 is missing: Ping rings."));
        else if (fault == SoundFault::Unplayable)
            self->ringStandInForFile(alarm, QStringLiteral("%1 cannot be played: Ping rings."));
    });
}

void AlarmRinger::ringStandInForFile(const AlarmPtr& alarm, const QString& note) {
    m_loading.erase(alarm);
    const QString file = QFileInfo(alarm->soundPath()).fileName();
    ringStandIn(alarm, {note, file.isEmpty() ? QStringLiteral("The sound") : file});
}

void AlarmRinger::ringStandIn(const AlarmPtr& alarm, const SnoozeWindowController::Note& note) {
    m_ringing.setFault(alarm, note);
    m_surroundings.repeat.play(
        m_mix.voiceOf(m_surroundings.player.ringWithContentsOfFile(m_surroundings.standInPath())),
        alertPlays,
        [weak = m_lifeline.weak(), alarm, note, ended = m_ringing.soundBegins(alarm)](bool heard) {
            ended(heard);
            AlarmRinger* const self = weak.get();
            if (self && heard && alarm->isTriggered() && alarm->isPlaySound() &&
                alarm->ringsUntilAnswered())
                self->ringStandIn(alarm, note);
        });
}

void AlarmRinger::deactivateAlarm(const AlarmPtr& alarm) {
    alarm->setIsTriggered(false);
    m_loading.erase(alarm);
    m_speaking.erase(alarm);
    m_rounds.erase(alarm);
    m_surroundings.textSpeaker.stopSpeaking(alarm);
    m_ringing.remove(alarm);
    if (const auto found = playing(alarm); found != m_playing.end())
        found->sound.stop();
    if (m_ringing.isEmpty())
        m_surroundings.icon.stopFlashing();
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/RingingAlarms.h"

#include "platform/SleepInhibitor.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// After a sound that was not heard though nothing is known to be wrong with the output.
constexpr auto pauseBeforeRetry = 2s;
// By then it is the sound's own fault.
constexpr int mostBrokenOff = 2;

QString lineOf(SoundOutputState::Obstacle obstacle) {
    using Obstacle = SoundOutputState::Obstacle;
    switch (obstacle) {
    case Obstacle::None:
        return {};
    case Obstacle::NoModule:
        return QStringLiteral("Not heard: sounds cannot be played.");
    case Obstacle::NoServer:
        return QStringLiteral("Not heard: no sound server answers.");
    case Obstacle::NoOutput:
    case Obstacle::DummyOutput:
        return QStringLiteral("Not heard: there is no sound output.");
    case Obstacle::Muted:
        return QStringLiteral("Not heard: the sound is muted.");
    case Obstacle::VolumeZero:
        return QStringLiteral("Not heard: the volume is zero.");
    }
    return {};
}

bool isToBeHeard(const Alarm& alarm) {
    return alarm.isPlaySound() || (alarm.isSpeakAlarmName() && !alarm.voiceName().isEmpty());
}

} // namespace

RingingAlarms::RingingAlarms(RunLoop& runLoop, SoundOutput& output, SleepInhibitor& inhibitor,
                             SoundAgain soundAgain)
    : m_runLoop(runLoop)
    , m_output(output)
    , m_inhibitor(inhibitor)
    , m_soundAgain(std::move(soundAgain)) {}

RingingAlarms::~RingingAlarms() {
    m_inhibitor.setHeld(false);
}

void RingingAlarms::add(const AlarmPtr& alarm,
                        const std::shared_ptr<SnoozeWindowController>& window) {
    remove(alarm);
    m_ringing.push_back({.alarm = alarm, .window = window, .fault = {}, .unheard = {}});
    m_inhibitor.setHeld(true);
    if (!m_watch && isToBeHeard(*alarm))
        m_watch = m_output.watch([this](const SoundOutputState& state) { outputChanged(state); });
    show(m_ringing.back());
}

void RingingAlarms::remove(const AlarmPtr& alarm) {
    std::erase_if(m_ringing, [&](const Ringing& each) { return each.alarm == alarm; });
    if (!m_ringing.empty())
        return;
    m_inhibitor.setHeld(false);
    m_watch.reset();
    m_retry.cancel();
    m_outputFault.clear();
    m_isOutputLost = false;
}

RingingAlarms::Ringing* RingingAlarms::find(const AlarmPtr& alarm) {
    const auto found = std::find_if(m_ringing.begin(), m_ringing.end(),
                                    [&](const Ringing& each) { return each.alarm == alarm; });
    return found == m_ringing.end() ? nullptr : &*found;
}

RingingAlarms::Ended RingingAlarms::soundBegins(const AlarmPtr& alarm) {
    Ringing* const ringing = find(alarm);
    if (!ringing)
        return [](bool) {};
    ringing->sound = ++m_sounds;
    ringing->isLost = m_isOutputLost;
    ringing->isWaiting = false;
    return [self = m_lifeline.weak(), sound = ringing->sound](bool isHeard) {
        if (RingingAlarms* const alive = self.get())
            alive->soundEnded(sound, isHeard);
    };
}

void RingingAlarms::soundGivesWay(const AlarmPtr& alarm) {
    if (Ringing* const ringing = find(alarm)) {
        ringing->sound = 0;
        ringing->unheard.clear();
        show(*ringing);
    }
}

void RingingAlarms::soundEnded(std::uint64_t sound, bool isHeard) {
    const auto ringing = std::find_if(m_ringing.begin(), m_ringing.end(),
                                      [&](const Ringing& each) { return each.sound == sound; });
    if (ringing == m_ringing.end())
        return;
    ringing->sound = 0;
    ringing->isWaiting = !isHeard || ringing->isLost;
    ringing->brokenOff = isHeard || ringing->isLost ? 0 : ringing->brokenOff + 1;
    if (!ringing->isWaiting)
        ringing->unheard.clear();
    else if (ringing->unheard.isEmpty())
        ringing->unheard =
            m_isOutputLost ? m_outputFault : QStringLiteral("Not heard: the sound broke off.");
    show(*ringing);
    if (ringing->isWaiting)
        m_retry = m_runLoop.scheduleOnce(
            pauseBeforeRetry, [this] { soundWaitingAgain(); }, RunLoopMode::Common);
}

void RingingAlarms::soundWaitingAgain() {
    std::vector<std::pair<AlarmPtr, Again>> waiting;
    for (const Ringing& ringing : m_ringing)
        if (ringing.isWaiting && !m_isOutputLost)
            waiting.emplace_back(ringing.alarm,
                                 ringing.brokenOff < mostBrokenOff ? Again::Own : Again::StandIn);
    for (const auto& [alarm, which] : waiting)
        m_soundAgain(alarm, which);
}

void RingingAlarms::setFault(const AlarmPtr& alarm, const SnoozeWindowController::Note& fault) {
    if (Ringing* const ringing = find(alarm)) {
        ringing->fault = fault;
        show(*ringing);
    }
}

void RingingAlarms::outputChanged(const SoundOutputState& state) {
    const bool wasLost = std::exchange(m_isOutputLost, state.isLoss());
    m_outputFault = lineOf(state.obstacle);
    for (Ringing& ringing : m_ringing) {
        ringing.isLost = ringing.isLost || m_isOutputLost;
        if (m_isOutputLost && (ringing.isWaiting || ringing.sound != 0))
            ringing.unheard = m_outputFault;
        show(ringing);
    }
    if (wasLost)
        soundWaitingAgain();
}

void RingingAlarms::show(const Ringing& ringing) const {
    const auto window = ringing.window.lock();
    if (!window)
        return;
    const bool isUnheard = !m_outputFault.isEmpty() && isToBeHeard(*ringing.alarm);
    const QString& why = isUnheard ? m_outputFault : ringing.unheard;
    window->setNote(why.isEmpty() ? ringing.fault : SnoozeWindowController::Note{why, {}});
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/RingingAlarms.h"

#include "platform/SleepInhibitor.h"

#include <algorithm>

namespace dorvane {

namespace {

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

RingingAlarms::RingingAlarms(SoundOutput& output, SleepInhibitor& inhibitor)
    : m_output(output), m_inhibitor(inhibitor) {}

RingingAlarms::~RingingAlarms() {
    m_inhibitor.setHeld(false);
}

void RingingAlarms::add(const AlarmPtr& alarm,
                        const std::shared_ptr<SnoozeWindowController>& window) {
    remove(alarm);
    m_ringing.push_back({alarm, window, {}});
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
    m_outputFault.clear();
}

void RingingAlarms::setFault(const AlarmPtr& alarm, const SnoozeWindowController::Note& fault) {
    for (Ringing& ringing : m_ringing)
        if (ringing.alarm == alarm) {
            ringing.fault = fault;
            show(ringing);
        }
}

void RingingAlarms::outputChanged(const SoundOutputState& state) {
    m_outputFault = lineOf(state.obstacle);
    for (const Ringing& ringing : m_ringing)
        show(ringing);
}

void RingingAlarms::show(const Ringing& ringing) const {
    const auto window = ringing.window.lock();
    if (!window)
        return;
    const bool isUnheard = !m_outputFault.isEmpty() && isToBeHeard(*ringing.alarm);
    window->setNote(isUnheard ? SnoozeWindowController::Note{m_outputFault, {}} : ringing.fault);
}

} // namespace dorvane

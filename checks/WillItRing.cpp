// SPDX-License-Identifier: GPL-3.0-or-later
#include "checks/WillItRing.h"

#include "platform/SpeechService.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 10s;

bool speaks(const Alarm& alarm) {
    return alarm.isSpeakAlarmName() && !alarm.voiceName().isEmpty();
}

AlarmFacts factsOf(const Alarm& alarm) {
    AlarmFacts facts;
    facts.title = alarm.title();
    facts.soundPath = alarm.isPlaySound() ? alarm.soundPath() : QString();
    facts.isReadInTime = facts.soundPath.isEmpty(); // until it is
    facts.voice = speaks(alarm) ? alarm.voiceName() : QString();
    return facts;
}

} // namespace

// What is being found out, for whoever asked.
struct WillItRing::Inquiry {
    RingingFacts facts;
    std::vector<Done> asking;
    int open = 0; // parts that are not answered yet
    std::unique_ptr<SoundOutput::Watch> output;
    std::map<QString, std::unique_ptr<Sound>> sounds; // that are being read, by their paths
    RunLoopTimer patience;
};

WillItRing::WillItRing(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {}

WillItRing::~WillItRing() = default;

template<typename Take>
auto WillItRing::answer(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound, Take take) {
    return [self = m_lifeline.weak(), weak = std::weak_ptr(inquiry), testSound,
            take](const auto& value) {
        WillItRing* const alive = self.get();
        const auto of = weak.lock();
        if (!alive || !of)
            return;
        take(*of, value);
        alive->answered(*of, testSound);
    };
}

void WillItRing::ask(TestSound testSound, Done done) {
    std::shared_ptr<Inquiry>& known = m_inquiries[testSound];
    if (known) {
        known->asking.push_back(std::move(done));
        return;
    }
    known = std::make_shared<Inquiry>();
    const auto inquiry = known;
    inquiry->asking.push_back(std::move(done));
    inquiry->facts.icon = m_surroundings.icon();
    inquiry->facts.startsAtLogin = m_surroundings.startsAtLogin();
    inquiry->facts.wakes = m_surroundings.wakeAlarm.ability();
    inquiry->facts.isToWake = m_surroundings.isToWake();
    for (const AlarmPtr& alarm : m_surroundings.alarms())
        inquiry->facts.alarms.push_back(factsOf(*alarm));
    inquiry->patience = m_surroundings.runLoop.scheduleOnce(
        patience, [this, testSound] { finish(testSound); }, RunLoopMode::Common);

    ++inquiry->open; // until every part has been asked
    askOutput(inquiry, testSound);
    askSounds(inquiry, testSound);
    askVoices(inquiry, testSound);
    ++inquiry->open;
    m_surroundings.desktop.ask(
        answer(inquiry, testSound, [](Inquiry& of, const DesktopAbilities& abilities) {
            of.facts.desktop = abilities;
        }));
    m_surroundings.runLoop.defer(m_lifeline.guard(
        [inquiry, testSound](WillItRing& self) { self.answered(*inquiry, testSound); }));
}

void WillItRing::askOutput(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound) {
    ++inquiry->open;
    inquiry->output = m_surroundings.output.watch(
        [this, weak = std::weak_ptr(inquiry), testSound](const SoundOutputState& state) {
            const auto of = weak.lock();
            const bool isFirst = !of->facts.output;
            of->facts.output = state;
            if (isFirst)
                answered(*of, testSound);
        });
    if (testSound == TestSound::None)
        return;
    ++inquiry->open;
    m_surroundings.output.prove(
        m_surroundings.testSound,
        answer(inquiry, testSound, [](Inquiry& of, SoundProof proof) { of.facts.proof = proof; }));
}

void WillItRing::askSounds(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound) {
    for (const AlarmFacts& alarm : inquiry->facts.alarms)
        if (!alarm.soundPath.isEmpty())
            inquiry->sounds[alarm.soundPath];
    inquiry->open += int(inquiry->sounds.size());
    for (auto& [path, sound] : inquiry->sounds) {
        sound = m_surroundings.player.soundWithContentsOfFile(path);
        sound->whenLoaded(
            [this, weak = std::weak_ptr(inquiry), name = path, &read = *sound, testSound] {
                const auto of = weak.lock();
                for (AlarmFacts& alarm : of->facts.alarms)
                    if (alarm.soundPath == name) {
                        alarm.isReadInTime = true;
                        alarm.sound = read.fault();
                        alarm.isSilent = read.isSilent();
                    }
                answered(*of, testSound);
            });
    }
}

void WillItRing::askVoices(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound) {
    const bool speaksAny =
        std::any_of(inquiry->facts.alarms.begin(), inquiry->facts.alarms.end(),
                    [](const AlarmFacts& alarm) { return !alarm.voice.isEmpty(); });
    if (!speaksAny)
        return;
    ++inquiry->open;
    m_surroundings.speech.whenVoicesKnown(
        m_lifeline.guard([weak = std::weak_ptr(inquiry), testSound](WillItRing& self) {
            const auto of = weak.lock();
            if (!of)
                return;
            const QStringList voices = self.m_surroundings.speech.voiceNames();
            for (AlarmFacts& alarm : of->facts.alarms)
                alarm.hasVoice = voices.contains(alarm.voice);
            self.answered(*of, testSound);
        }));
}

void WillItRing::answered(Inquiry& inquiry, TestSound testSound) {
    if (--inquiry.open == 0)
        finish(testSound);
}

// Not from inside a callback of something that the inquiry holds.
void WillItRing::finish(TestSound testSound) {
    m_surroundings.runLoop.defer(m_lifeline.guard([testSound](WillItRing& self) {
        const auto inquiry = std::exchange(self.m_inquiries[testSound], nullptr);
        if (!inquiry)
            return; // two of its ends came together
        const std::vector<Check> checks = checksOf(inquiry->facts);
        for (const Done& done : inquiry->asking)
            done(checks);
    }));
}

} // namespace dorvane

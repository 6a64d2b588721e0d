// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/RingMix.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace dorvane {

namespace {

// Files go up to full scale: together these stay below nine tenths of it, however many there are.
constexpr float frontGain = 0.75F;
constexpr float gainOfTheOthers = 0.14F;

// More than a sound server holds of a sound (see PulseVoice), so that a change is heard by then.
constexpr RunLoop::Milliseconds longestHeld{150};

// A sound whose own volume and whose place in the mix are two things.
class MixedSound final : public Sound {
public:
    MixedSound(Lifeline<RingMix>::Weak mix, std::unique_ptr<Sound> sound, float gain,
               std::function<void()> covered)
        : m_mix(std::move(mix))
        , m_covered(std::move(covered))
        , m_level(sound->volume())
        , m_gain(gain)
        , m_sound(std::move(sound)) {
        if (gain != 1) // or its first samples would be too loud
            m_sound->setVolume(m_level * gain);
    }

    bool play() override {
        const bool isKnown = m_sound->duration() > Seconds(0);
        using Stage = RingMix::Voice::Stage;
        if (RingMix* const mix = m_mix.get(); mix && !m_voice)
            m_voice.emplace(
                *mix, [this](float gain) { setGain(gain); },
                isKnown ? Stage::Sounding : Stage::Beginning);
        if (!m_sound->play())
            return false;
        if (!isKnown)
            m_sound->whenLoaded([this] {
                if (!m_sound->isPlaying() || m_sound->duration() <= Seconds(0))
                    m_voice.reset();
                else if (m_voice)
                    m_voice->sounds();
            });
        return true;
    }
    void stop() override { m_sound->stop(); }
    [[nodiscard]] bool isPlaying() const override { return m_sound->isPlaying(); }
    void pause() override { m_sound->pause(); }
    void resume() override { m_sound->resume(); }
    [[nodiscard]] Seconds duration() const override { return m_sound->duration(); }
    [[nodiscard]] bool isSilent() const override { return m_sound->isSilent(); }
    [[nodiscard]] SoundFault fault() const override { return m_sound->fault(); }
    [[nodiscard]] Seconds currentTime() const override { return m_sound->currentTime(); }
    void setCurrentTime(Seconds position) override { m_sound->setCurrentTime(position); }
    [[nodiscard]] float volume() const override { return m_level; }
    void setVolume(float volume) override {
        m_level = volume;
        m_sound->setVolume(m_level * m_gain);
    }
    void whenLoaded(std::function<void()> callback) override {
        m_sound->whenLoaded(std::move(callback));
    }
    void setFinished(std::function<void(bool completed)> callback) override {
        m_sound->setFinished([this, callback = std::move(callback)](bool completed) {
            if (m_covered && m_voice && !m_voice->isInFront())
                m_covered();
            callback(completed); // which may destroy this
        });
    }

private:
    void setGain(float gain) {
        m_gain = gain;
        m_sound->setVolume(m_level * gain);
    }

    const Lifeline<RingMix>::Weak m_mix;
    const std::function<void()> m_covered;
    float m_level;
    float m_gain;
    std::unique_ptr<Sound> m_sound;
    std::optional<RingMix::Voice> m_voice; // goes first: it sets the volume of the sound
};

} // namespace

RingMix::Voice::Voice(RingMix& mix, SetGain setGain, Stage stage)
    : m_mix(mix.m_lifeline.weak()), m_setGain(std::move(setGain)), m_stage(stage) {
    mix.m_voices.push_back(this);
    if (stage == Stage::Sounding)
        mix.keepSilent(*this);
    mix.balance();
}

void RingMix::Voice::sounds() {
    RingMix* const mix = m_mix.get();
    if (!mix || m_stage != Stage::Beginning)
        return;
    m_stage = Stage::Sounding;
    std::erase(mix->m_voices, this);
    mix->m_voices.push_back(this);
    if (m_gain == 0)
        mix->keepSilent(*this);
    mix->balance();
}

RingMix::Voice::~Voice() {
    RingMix* const mix = m_mix.get();
    if (!mix)
        return;
    std::erase(mix->m_voices, this);
    mix->balance();
    if (mix->isSilent() && mix->m_fallenSilent)
        mix->m_fallenSilent();
}

bool RingMix::Voice::isInFront() const {
    const RingMix* const mix = m_mix.get();
    return mix && mix->front() == this;
}

std::unique_ptr<Sound> RingMix::voiceOf(std::unique_ptr<Sound> sound,
                                        std::function<void()> covered) {
    return std::make_unique<MixedSound>(m_lifeline.weak(), std::move(sound), m_volume,
                                        std::move(covered));
}

void RingMix::setVolume(float volume) {
    m_volume = volume;
    balance();
}

RingMix::Voice* RingMix::front() const {
    const auto newest = std::find_if(m_voices.rbegin(), m_voices.rend(), [](const Voice* voice) {
        return voice->m_stage != Voice::Stage::Beginning;
    });
    return newest == m_voices.rend() ? nullptr : *newest;
}

// What the sound server holds of the others is heard as loud as it was.
void RingMix::keepSilent(Voice& voice) {
    if (std::none_of(m_voices.begin(), m_voices.end(),
                     [&](const Voice* other) { return other != &voice && other->m_gain > 0; }))
        return;
    voice.m_isSilent = true;
    voice.m_silence = m_runLoop.scheduleOnce(
        longestHeld,
        [this, &voice] {
            voice.m_isSilent = false;
            balance();
        },
        RunLoopMode::Common);
}

float RingMix::shareOf(const Voice& voice) const {
    const Voice* const inFront = front();
    // Of several that only begin the first is heard, so that a ring is never late.
    if (!inFront)
        return &voice == m_voices.front() ? 1 : 0;
    const auto others =
        std::count_if(m_voices.begin(), m_voices.end(), [inFront](const Voice* each) {
            return each != inFront && each->m_stage != Voice::Stage::Beginning;
        });
    if (&voice == inFront)
        return others == 0 ? 1 : frontGain;
    return voice.m_stage == Voice::Stage::Beginning ? 0 : gainOfTheOthers / float(others);
}

// Quieter first: nothing is to be too loud between two changes.
void RingMix::balance() {
    for (Voice* const voice : m_voices) {
        voice->m_isSilent = voice->m_isSilent && m_voices.size() > 1;
        const float gain = voice->m_isSilent ? 0 : m_volume * shareOf(*voice);
        if (std::exchange(voice->m_gain, gain) != gain)
            voice->m_setGain(gain);
    }
}

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/RingMix.h"

#include <optional>
#include <utility>

namespace dorvane {

namespace {

// Files go up to full scale: together these stay below nine tenths of it, however many there are.
constexpr float frontGain = 0.75F;
constexpr float gainOfTheOthers = 0.14F;

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

    // Not before it is loaded: what cannot be heard yet, or ever, is in nobody's way.
    bool play() override {
        const bool isKnown = m_sound->duration() > Seconds(0);
        if (isKnown)
            join();
        if (!m_sound->play())
            return false;
        if (!isKnown)
            m_sound->whenLoaded([this] {
                if (m_sound->isPlaying() && m_sound->duration() > Seconds(0))
                    join();
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
    void join() {
        RingMix* const mix = m_mix.get();
        if (mix && !m_voice)
            m_voice.emplace(*mix, [this](float gain) {
                m_gain = gain;
                m_sound->setVolume(m_level * m_gain);
            });
    }

    const Lifeline<RingMix>::Weak m_mix;
    const std::function<void()> m_covered;
    float m_level;
    float m_gain;
    std::unique_ptr<Sound> m_sound;
    std::optional<RingMix::Voice> m_voice; // goes first: it sets the volume of the sound
};

} // namespace

RingMix::Voice::Voice(RingMix& mix, SetGain setGain)
    : m_mix(mix.m_lifeline.weak()), m_setGain(std::move(setGain)) {
    mix.m_voices.push_back(this);
    mix.balance();
}

RingMix::Voice::~Voice() {
    RingMix* const mix = m_mix.get();
    if (!mix)
        return;
    std::erase(mix->m_voices, this);
    mix->balance();
    if (mix->m_voices.empty() && mix->m_fallenSilent)
        mix->m_fallenSilent();
}

bool RingMix::Voice::isInFront() const {
    const RingMix* const mix = m_mix.get();
    return mix && mix->m_voices.back() == this;
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

// Quieter first: nothing is to be too loud between two changes.
void RingMix::balance() {
    const auto others = float(m_voices.size()) - 1;
    for (Voice* const voice : m_voices) {
        const bool isInFront = voice == m_voices.back();
        const float gain = m_volume * (m_voices.size() == 1 ? 1
                                       : isInFront          ? frontGain
                                                            : gainOfTheOthers / others);
        if (std::exchange(voice->m_gain, gain) != gain)
            voice->m_setGain(gain);
    }
}

} // namespace dorvane

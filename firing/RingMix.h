// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

// What alarms that ring at the same time sound like together: none waits, the newest stands in
// front, and the others are so much quieter that all of them stay below full scale, at its
// beginning too: it is silent until the others are heard to have gone back. One alone is left as it
// is. All of them as loud as rings are to be. Main thread only.
class RingMix {
public:
    // Somebody that sounds; leaves the mix when it is destroyed.
    class Voice {
    public:
        using SetGain = std::function<void(float gain)>;

        // Sounding: in front of all others from now on. Beginning: to be heard in a moment, in
        // front then, or it turns out that it cannot be heard, and until then in nobody's way.
        // Spoken: sounds already, and would lose its first word by a silence.
        enum class Stage { Beginning, Sounding, Spoken };

        // The gain, 0.0 to 1.0, is 1.0 until it is set.
        Voice(RingMix& mix, SetGain setGain, Stage stage);
        ~Voice();
        Voice(const Voice&) = delete;
        Voice& operator=(const Voice&) = delete;

        // Beginning no more.
        void sounds();

        [[nodiscard]] bool isInFront() const;

    private:
        friend class RingMix;

        const Lifeline<RingMix>::Weak m_mix;
        const SetGain m_setGain;
        Stage m_stage;
        float m_gain = 1;
        bool m_isSilent = false; // until the others have gone back
        RunLoopTimer m_silence;
    };

    explicit RingMix(RunLoop& runLoop) : m_runLoop(runLoop) {}

    // The sound, as one voice from when it is first heard until it is destroyed. `covered` is
    // called when it comes to its end behind another one.
    [[nodiscard]] std::unique_ptr<Sound> voiceOf(std::unique_ptr<Sound> sound,
                                                 std::function<void()> covered = {});

    // How loud it all is, 0.0 to 1.0, which it is at first.
    void setVolume(float volume);

    // Called when the last voice has left; must not destroy anything that sounds.
    void setFallenSilent(std::function<void()> silent) { m_fallenSilent = std::move(silent); }
    [[nodiscard]] bool isSilent() const { return !front(); }

private:
    [[nodiscard]] Voice* front() const;
    void keepSilent(Voice& voice);
    [[nodiscard]] float shareOf(const Voice& voice) const;
    void balance();

    RunLoop& m_runLoop;
    std::vector<Voice*> m_voices; // the newest last
    float m_volume = 1;
    std::function<void()> m_fallenSilent;
    Lifeline<RingMix> m_lifeline{*this};
};

} // namespace dorvane

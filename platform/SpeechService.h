// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace dorvane {

// The voices of this machine, and speaking with them. Voices go by number, from 1 on, in the order
// of voiceNames(). Listing voices reads a file for each of them, so that happens on another thread,
// once, when somebody first asks. Main thread only.
class SpeechService {
public:
    // A text that is being spoken, or made ready for that. Destroying it ends that, and neither
    // `begun` nor `done` is called any more.
    class Utterance {
    public:
        virtual ~Utterance() = default;

        // 0.0 to 1.0; 1.0 at first.
        virtual void setVolume(float volume) = 0;
    };

    virtual ~SpeechService() = default;

    // Empty until the voices are known, and where there is no speech.
    [[nodiscard]] virtual QStringList voiceNames() const = 0;

    // Calls back once when the voices are known, or cannot be had; at once when they are known
    // already. Why they cannot be had is logged; the next call tries again.
    virtual void whenVoicesKnown(std::function<void()> callback) = 0;

    // Has the text rendered now, so that it is heard at once when it is spoken within the next half
    // minute.
    virtual void prepare(const QString& text, int voice) = 0;

    // Starts speaking and returns; texts may overlap. `begun` is called when the text is heard, and
    // `done` when it is over, with true, or cannot be spoken, with false; neither from inside this
    // call. A number that no voice has speaks nothing and never calls back. The utterance may be
    // destroyed from inside `done`, and must not outlive the service.
    [[nodiscard]] virtual std::unique_ptr<Utterance>
    speak(const QString& text, int voice, std::function<void()> begun,
          std::function<void(bool isSpoken)> done) = 0;
};

} // namespace dorvane

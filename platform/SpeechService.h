// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace dorvane {

// The voices of this machine, and speaking with them. Voices go by number, from 1 on, in the order
// of voiceNames(). Listing voices reads a file for each of them, so that happens on another thread,
// once, when somebody first asks. Main thread only.
class SpeechService {
public:
    virtual ~SpeechService() = default;

    // Empty until the voices are known, and where there is no speech.
    [[nodiscard]] virtual QStringList voiceNames() const = 0;

    // Calls back once when the voices are known, or cannot be had; at once when they are known
    // already. Why they cannot be had is logged; the next call tries again.
    virtual void whenVoicesKnown(std::function<void()> callback) = 0;

    // Has the text rendered now, so that it is heard at once when it is spoken within the next half
    // minute.
    virtual void prepare(const QString& text, int voice) = 0;

    // Starts speaking and returns; texts may overlap. `done` is called when the text has been
    // heard, or cannot be heard, and never from inside this call. A number that no voice has
    // speaks nothing and never calls back.
    virtual void speak(const QString& text, int voice, std::function<void()> done) = 0;
};

} // namespace dorvane

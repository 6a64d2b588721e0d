// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace dorvane {

// What stands between a sound and somebody's ears.
struct SoundOutputState {
    enum class Obstacle {
        None,
        NoModule,    // what plays sounds cannot be loaded
        NoServer,    // no sound server answers
        NoOutput,    // the server has no output
        DummyOutput, // it has only the one that plays to nobody
        Muted,
        VolumeZero,
    };
    Obstacle obstacle = Obstacle::None;
    QString detail; // the output's name; of NoModule and NoServer the reason
    int volume = 0; // of the output, in percent; boosted ones have more than 100

    // Whether nothing can be heard that the user did not want so, as with a muted output.
    [[nodiscard]] bool isLoss() const {
        return obstacle != Obstacle::None && obstacle != Obstacle::Muted &&
               obstacle != Obstacle::VolumeZero;
    }
    friend bool operator==(const SoundOutputState&, const SoundOutputState&) = default;
};

// What came of playing a sound and listening for it where the output plays it.
enum class SoundProof {
    Heard,
    Silent,    // nothing at all came out
    Drowned,   // something came out in which it was not to be found
    NotPlayed, // the file or the server would not have it
    Deaf,      // the output cannot be listened to
};

// The output on which sounds are heard. Main thread only.
class SoundOutput {
public:
    // Destroying it ends what it stands for, and no callback follows.
    class Watch {
    public:
        virtual ~Watch() = default;
    };
    using Changed = std::function<void(const SoundOutputState& state)>;

    virtual ~SoundOutput() = default;

    // Calls back with the state as soon as it is known, and after each change while the watch is
    // kept; never from inside this call. Somebody who watches costs the machine a little: keep a
    // watch only as long as it matters.
    [[nodiscard]] virtual std::unique_ptr<Watch> watch(Changed changed) = 0;

    // Plays the file, as loud as it would ring, and listens for it. Answers once, within some
    // seconds, never from inside this call; who asks meanwhile is answered with the same.
    virtual void prove(const QString& path, std::function<void(SoundProof proof)> done) = 0;
};

} // namespace dorvane

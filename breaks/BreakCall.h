// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/Hearing.h"
#include "firing/CurrentSound.h"

#include <QString>

namespace dorvane {

// The sound that calls to a break, or back to work: once, for 20 seconds at most, getting quieter
// from the tenth on; and again where the sound server or the output had gone. A file that cannot be
// played stays silent, and the player's log says why. Main thread only; destroying it ends the
// sound.
class BreakCall {
public:
    // All must outlive it. `patience`: for how long it is worth while to be heard late.
    BreakCall(RunLoop& runLoop, SoundPlayer& player, SoundOutput& output,
              RunLoop::Milliseconds patience);

    // Takes the place of the call before. An empty path is silent.
    void play(const QString& path);
    void stop();

private:
    void begin();

    SoundPlayer& m_player;
    Hearing m_hearing;
    CurrentSound m_sound;
    QString m_path; // empty once it is to be heard no more
};

} // namespace dorvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <QString>

#include <list>
#include <memory>

namespace dorvane {

// Sounds that are read shortly before they are needed, so that they are heard at once then. Main
// thread only.
class PreparedSounds {
public:
    // Both must outlive it.
    PreparedSounds(RunLoop& runLoop, SoundPlayer& player);

    // Has the file read now. For one take(), within half a minute.
    void prepare(const QString& path);

    // The sound of the file: a prepared one where there is one, else a new one; never null. A file
    // that could not be read when it was prepared is tried again.
    [[nodiscard]] std::unique_ptr<Sound> take(const QString& path);

private:
    struct Prepared {
        QString path;
        std::unique_ptr<Sound> sound;
        std::shared_ptr<bool> isLoaded; // the sound tells it wherever it is by then
        RunLoopTimer expiry;
    };

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    std::list<Prepared> m_prepared;
};

} // namespace dorvane
